import QtQuick
import Vorle

// "Ton territoire": what a run searches for.
ListScreen {
    id: screen

    subtitle: shell.territory.summary
    onCurrentChanged: if (current) shell.territory.refresh()
    list.model: shell.territory
    list.section.property: "group"
    list.section.delegate: ListHeading {
        name: section // qmllint disable unqualified
        width: screen.contentWidth
    }
    list.delegate: Item {
        id: row

        required property string name
        required property string detail
        required property list<string> labels
        required property int weight

        width: screen.contentWidth
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
