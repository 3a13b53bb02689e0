import QtQuick
import Vorle
import Vorle.Models

// "Bilan": the last runs, newest first.
ListScreen {
    id: screen

    readonly property ReportModel model: shell.report

    subtitle: model.count === 0 ? "" : model.count === 1 ? qsTr("Ta première fouille") : qsTr("Tes %1 dernières fouilles").arg(model.count)
    onCurrentChanged: if (current) model.refresh()
    list.model: model
    list.spacing: Theme.cardGap
    list.anchors.topMargin: 22

    EmptyState {
        anchors.fill: parent
        visible: screen.list.count === 0
        title: qsTr("Pas encore de fouille.")
        text: qsTr("Chaque fouille laisse ici son compte rendu : ce que j’ai trouvé, lu, jugé, et ce qui n’a rien donné.")
    }
    list.delegate: Rectangle {
        id: card

        required property string dateText
        required property string addedText
        required property string factsText
        required property var scopes // NamedText
        required property list<string> notices
        required property bool stopped

        width: screen.contentWidth
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
                    required property namedText modelData
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
