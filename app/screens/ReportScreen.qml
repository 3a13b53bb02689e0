import QtQuick
import QtQuick.Templates as T
import Vorle

// "Bilan": the last runs, newest first.
FocusScope {
    id: screen

    required property string title
    required property var model // ReportModel
    property string searchKeys: ""
    property real bannerHeight: 0 // the height it leaves free at the top

    signal searchAsked

    anchors.fill: parent
    anchors.topMargin: bannerHeight
    focus: true
    Accessible.role: Accessible.Pane
    Accessible.name: title
    Keys.onPressed: event => event.accepted = !(event.modifiers & ~Qt.KeypadModifier) && sight.takes(event.key)

    function move(step: int) {
        sight.scrollBy(step * 80);
    }
    function focusContent() {
        list.forceActiveFocus();
    }

    InSight {
        id: sight
        view: list
    }
    SectionHead {
        id: head
        x: Theme.margin
        width: parent.width - 2 * Theme.margin
        title: screen.title
        subtitle: screen.model.count === 0 ? "" : screen.model.count === 1 ? qsTr("Ta première fouille") : qsTr("Tes %1 dernières fouilles").arg(screen.model.count)
        searchKeys: screen.searchKeys
        onSearchAsked: screen.searchAsked()
    }
    EmptyState {
        anchors.fill: parent
        anchors.topMargin: head.height
        visible: list.count === 0
        title: qsTr("Pas encore de fouille.")
        text: qsTr("Chaque fouille laisse ici son compte rendu : ce que j’ai trouvé, lu, jugé, et ce qui n’a rien donné.")
    }
    ListView {
        id: list
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.top: head.bottom
        anchors.topMargin: 22
        anchors.bottom: parent.bottom
        leftMargin: Theme.margin
        rightMargin: Theme.margin
        bottomMargin: Theme.margin
        clip: true
        focus: true
        keyNavigationEnabled: false
        spacing: Theme.cardGap
        model: screen.model
        boundsBehavior: Flickable.StopAtBounds
        Accessible.role: Accessible.List
        Accessible.name: screen.title
        T.ScrollBar.vertical: ScrollLine {}

        delegate: Rectangle {
            id: card

            required property string dateText
            required property string addedText
            required property string factsText
            required property var scopes
            required property var notices
            required property bool stopped

            width: list.width - 2 * Theme.margin
            height: column.implicitHeight + 2 * 18
            radius: Theme.radiusCard
            color: Theme.card
            border.width: 1
            border.color: Theme.line
            Accessible.role: Accessible.ListItem
            Accessible.name: dateText + ", " + addedText

            Column {
                id: column
                x: Theme.cardPadding
                y: 18
                width: parent.width - 2 * Theme.cardPadding
                spacing: 6

                Item {
                    width: parent.width
                    implicitHeight: added.implicitHeight

                    Title {
                        id: added
                        text: card.stopped ? qsTr("%1, fouille arrêtée").arg(card.addedText) : card.addedText
                    }
                    Label {
                        anchors.right: parent.right
                        anchors.baseline: added.baseline
                        text: card.dateText
                        color: Theme.inkFaint
                    }
                }
                Label {
                    width: parent.width
                    text: card.factsText
                    color: Theme.inkSoft
                }
                Repeater {
                    model: card.scopes

                    Item {
                        id: scope
                        required property var modelData
                        width: column.width
                        implicitHeight: Math.max(name.implicitHeight, found.implicitHeight)

                        Label {
                            id: name
                            width: 230
                            text: scope.modelData.name
                            color: Theme.inkFaint
                            elide: Text.ElideRight
                            wrapMode: Text.NoWrap
                        }
                        Label {
                            id: found
                            x: 242
                            width: parent.width - x
                            text: scope.modelData.text
                            color: scope.modelData.failed ? Theme.accent : Theme.inkSoft
                        }
                    }
                }
                Repeater {
                    model: card.notices

                    Label {
                        required property string modelData
                        width: column.width
                        text: modelData
                        color: Theme.inkFaint
                    }
                }
            }
        }
    }
}
