import QtQuick
import Vorle
import Vorle.Models

// The time done, part by part, against the time given.
Item {
    id: chart

    required property var parts // of FigurePart
    required property int budget // minutes a part; 0 for none
    required property string budgetText
    readonly property real groupWidth: width / Math.max(1, parts.length)
    readonly property real barWidth: Math.min(52, Math.round(groupWidth * 0.62))
    readonly property real highest: parts.reduce((most, part) => Math.max(most, part.minutes), budget)
    readonly property real room: 94

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
            readonly property bool roomy: chart.groupWidth >= 44

            x: index * chart.groupWidth
            width: chart.groupWidth
            height: chart.height

            ChartBar {
                anchors.horizontalCenter: parent.horizontalCenter
                width: chart.barWidth
                value: group.modelData.minutes
                highest: chart.highest
                room: chart.room
                figure: group.roomy ? group.modelData.timeText : ""
                fill: Theme.accentStrong
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
    // Dashes, across the bars.
    Item {
        visible: chart.budget > 0 && chart.highest > 0
        y: 112 - Math.round(chart.room * chart.budget / Math.max(1, chart.highest))
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
