import QtQuick
import Vorle

// The time done, part by part, against the time given.
ChartFrame {
    id: chart

    required property int budget // minutes a part; 0 for none
    required property string budgetText
    readonly property real barWidth: Math.min(52, Math.round(groupWidth * 0.62))
    readonly property real highest: parts.reduce((most, part) => Math.max(most, part.minutes), budget)

    group: ChartGroup {
        id: group
        frame: chart

        ChartBar {
            anchors.horizontalCenter: parent.horizontalCenter
            width: chart.barWidth
            value: group.modelData.minutes
            highest: chart.highest
            room: chart.room
            figure: chart.groupWidth >= 44 ? group.modelData.timeText : ""
            fill: Theme.accentStrong
        }
    }

    // Dashes, across the bars.
    Item {
        visible: chart.budget > 0 && chart.highest > 0
        y: chart.ground - Math.round(chart.room * chart.budget / Math.max(1, chart.highest))
        width: parent.width

        Row {
            spacing: 4
            Repeater {
                model: Math.max(0, Math.floor(chart.width / 8))
                Rectangle {
                    width: 4
                    height: 1
                    color: Theme.inkFaint
                }
            }
        }
        Label {
            anchors.right: parent.right
            anchors.bottom: parent.top
            anchors.bottomMargin: 3
            text: chart.budgetText
            color: Theme.inkFaint
            font.pixelSize: Theme.textSmall
            lineHeight: 1
            Accessible.ignored: true
        }
    }
}
