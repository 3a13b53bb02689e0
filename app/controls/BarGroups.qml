import QtQuick
import Vorle
import Vorle.Models

// What was found, kept and done, part by part.
Item {
    id: chart

    required property var parts // of FigurePart
    readonly property real groupWidth: width / Math.max(1, parts.length)
    readonly property real barWidth: Math.max(3, Math.min(21, Math.floor((groupWidth - 10) / 3) - 2))
    readonly property bool figured: barWidth >= 12
    readonly property real highest: parts.reduce((most, part) => Math.max(most, part.found, part.kept, part.done), 0)

    implicitHeight: 136

    Rectangle {
        y: 112
        width: parent.width
        height: 1
        color: Theme.line
    }
    Repeater {
        model: chart.parts

        Item {
            id: group

            required property figurePart modelData
            required property int index

            x: index * chart.groupWidth
            width: chart.groupWidth
            height: chart.height

            Row {
                anchors.horizontalCenter: parent.horizontalCenter
                spacing: 2

                ChartBar {
                    width: chart.barWidth
                    value: group.modelData.found
                    highest: chart.highest
                    room: 94
                    figure: chart.figured ? value : ""
                    fill: Theme.edge
                    hollow: true
                }
                ChartBar {
                    width: chart.barWidth
                    value: group.modelData.kept
                    highest: chart.highest
                    room: 94
                    figure: chart.figured ? value : ""
                }
                ChartBar {
                    width: chart.barWidth
                    value: group.modelData.done
                    highest: chart.highest
                    room: 94
                    figure: chart.figured ? value : ""
                    fill: Theme.accentStrong
                    ink: Theme.tintInk
                }
            }
            Label {
                y: 118
                width: parent.width
                horizontalAlignment: Text.AlignHCenter
                text: group.modelData.label
                color: Theme.inkFaint
                font.pixelSize: Theme.textSmall
                lineHeight: 1
                wrapMode: Text.NoWrap
                Accessible.ignored: true
            }
        }
    }
}
