import QtQuick
import Vorle
import Vorle.Models

// Where topics came from, and how many of each were kept.
Column {
    id: chart

    required property var sources // of FigureSource
    readonly property real most: sources.reduce((most, source) => Math.max(most, source.found), 1)

    spacing: 9

    Repeater {
        model: chart.sources

        Item {
            id: row

            required property figureSource modelData
            readonly property real track: width - 121 - 84

            width: chart.width
            implicitHeight: Theme.grown(18)

            Label {
                width: Theme.grown(112)
                text: row.modelData.name
                color: Theme.inkSoft
                font.pixelSize: Theme.textNote
                lineHeight: 1
                elide: Text.ElideRight
                wrapMode: Text.NoWrap
                anchors.verticalCenter: parent.verticalCenter
                Accessible.ignored: true
            }
            Rectangle {
                x: 121
                anchors.verticalCenter: parent.verticalCenter
                width: Math.max(height, row.track * row.modelData.found / chart.most)
                height: 12
                radius: 4
                color: "transparent"
                border.width: 1
                border.color: Theme.edge

                Rectangle {
                    visible: row.modelData.kept > 0
                    width: Math.max(8, parent.width * row.modelData.kept / Math.max(1, row.modelData.found))
                    height: parent.height
                    radius: 4
                    color: Theme.strong
                }
            }
            Row {
                anchors.right: parent.right
                anchors.verticalCenter: parent.verticalCenter

                Label {
                    text: row.modelData.kept
                    font.pixelSize: Theme.textNote
                    font.weight: Font.DemiBold
                    lineHeight: 1
                    Accessible.ignored: true
                }
                Label {
                    text: qsTr(" sur %1").arg(row.modelData.found)
                    color: Theme.inkFaint
                    font.pixelSize: Theme.textNote
                    lineHeight: 1
                    Accessible.ignored: true
                }
            }
        }
    }
}
