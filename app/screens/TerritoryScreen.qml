import QtQuick
import QtQuick.Templates as T
import Vorle

// "Ton territoire": what a run searches for.
FocusScope {
    id: screen

    required property string title
    required property var model // TerritoryModel
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
        subtitle: screen.model.summary
        searchKeys: screen.searchKeys
        onSearchAsked: screen.searchAsked()
    }
    ListView {
        id: list
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.top: head.bottom
        anchors.topMargin: 12
        anchors.bottom: parent.bottom
        leftMargin: Theme.margin
        rightMargin: Theme.margin
        bottomMargin: Theme.margin
        clip: true
        focus: true
        keyNavigationEnabled: false
        model: screen.model
        boundsBehavior: Flickable.StopAtBounds
        Accessible.role: Accessible.List
        Accessible.name: screen.title
        section.property: "group"
        section.delegate: ListHeading {
            name: section
            width: list.width - 2 * Theme.margin
        }
        T.ScrollBar.vertical: ScrollLine {}

        delegate: Item {
            id: row

            required property string name
            required property string detail
            required property var labels
            required property int weight

            width: list.width - 2 * Theme.margin
            height: Math.max(48, words.implicitHeight + 22)
            Accessible.role: Accessible.ListItem
            Accessible.name: name
            Accessible.description: detail

            Rectangle {
                width: parent.width
                height: 1
                color: Theme.line
            }
            Column {
                id: words
                width: parent.width - marks.width - 20
                anchors.verticalCenter: parent.verticalCenter
                spacing: 2

                Label {
                    width: parent.width
                    text: row.name
                    font.weight: Font.Medium
                    font.pixelSize: Theme.textMenu
                    lineHeight: 1.2
                    Accessible.ignored: true
                }
                Label {
                    width: parent.width
                    visible: text.length > 0
                    text: row.detail
                    color: Theme.inkSoft
                    font.pixelSize: Theme.textNote
                    lineHeight: 1.25
                    Accessible.ignored: true
                }
            }
            Row {
                id: marks
                anchors.right: parent.right
                anchors.verticalCenter: parent.verticalCenter
                spacing: 6

                Repeater {
                    model: row.labels

                    Chip {
                        required property string modelData
                        text: modelData
                    }
                }
                // An interest's weight, from 1 to 5.
                Repeater {
                    model: row.weight > 0 ? 5 : 0

                    Rectangle {
                        required property int index
                        width: 7
                        height: 7
                        radius: 3.5
                        color: index < row.weight ? Theme.accent : Theme.line
                    }
                }
            }
        }
    }
}
