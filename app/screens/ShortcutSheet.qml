import QtQuick
import Vorle
import Vorle.Models

// "Raccourcis clavier": drawn from the table that dispatches the keys.
Panel {
    id: sheet

    required property var groups // KeyGroup

    name: qsTr("Raccourcis clavier")
    sheetWidth: 860

    bodyHeight: body.implicitHeight

    Column {
        id: body
        width: parent.width
        spacing: 18

        Title {
            text: sheet.name
            size: Theme.titleOpen
        }
        Flow {
            width: parent.width
            spacing: 36
            flow: Flow.LeftToRight

            Repeater {
                model: sheet.groups

                Column {
                    id: group
                    required property keyGroup modelData
                    width: (parent.width - 36) / 2
                    spacing: 7

                    Title {
                        text: group.modelData.title
                        color: Theme.inkFaint
                        size: Theme.titleSmall
                        font.weight: Font.DemiBold
                        bottomPadding: 2
                    }
                    Repeater {
                        model: group.modelData.rows

                        Item {
                            id: line
                            required property keyRow modelData
                            width: group.width
                            implicitHeight: Math.max(cap.implicitHeight, words.implicitHeight)
                            Accessible.role: Accessible.StaticText
                            Accessible.name: qsTr("%1 : %2").arg(modelData.label).arg(modelData.keys)

                            KeyCap {
                                id: cap
                                keys: line.modelData.keys
                                ink: Theme.ink
                            }
                            Label {
                                id: words
                                x: Math.max(104, cap.width + 12)
                                width: parent.width - x
                                text: line.modelData.label
                                color: Theme.inkSoft
                                lineHeight: 1.2
                                Accessible.ignored: true
                                anchors.verticalCenter: parent.verticalCenter
                            }
                        }
                    }
                }
            }
        }
    }
}
