import QtQuick
import Vorle

// What was found, kept and done, part by part.
ChartFrame {
    id: chart

    readonly property real barWidth: Math.max(3, Math.min(21, Math.floor((groupWidth - 10) / 3) - 2))
    readonly property bool figured: barWidth >= 12
    readonly property real highest: parts.reduce((most, part) => Math.max(most, part.found, part.kept, part.done), 0)

    group: ChartGroup {
        id: group
        frame: chart

        Row {
            anchors.horizontalCenter: parent.horizontalCenter
            spacing: 2

            ChartBar {
                width: chart.barWidth
                value: group.modelData.found
                highest: chart.highest
                room: chart.room
                figure: chart.figured ? value : ""
                fill: Theme.edge
                hollow: true
            }
            ChartBar {
                width: chart.barWidth
                value: group.modelData.kept
                highest: chart.highest
                room: chart.room
                figure: chart.figured ? value : ""
            }
            ChartBar {
                width: chart.barWidth
                value: group.modelData.done
                highest: chart.highest
                room: chart.room
                figure: chart.figured ? value : ""
                fill: Theme.accentStrong
                ink: Theme.tintInk
            }
        }
    }
}
