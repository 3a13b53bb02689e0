import QtQuick
import Vorle
import Vorle.Models

// What became of the topics of each score: how much of each was kept, put off, set aside.
Item {
    id: chart

    required property var scores // of FigureScore
    readonly property real columnWidth: Math.min(47, width / Math.max(1, scores.length))
    readonly property real room: 88

    implicitHeight: room + 44

    Row {
        anchors.horizontalCenter: parent.horizontalCenter

        Repeater {
            model: chart.scores

            Item {
                id: stack

                required property figureScore modelData
                readonly property int all: modelData.kept + modelData.later + modelData.dismissed
                readonly property int shown: (modelData.kept > 0 ? 1 : 0) + (modelData.later > 0 ? 1 : 0) + (modelData.dismissed > 0 ? 1 : 0)
                readonly property real share: (chart.room - 2 * (shown - 1)) / Math.max(1, all)

                width: chart.columnWidth
                height: chart.height

                Column {
                    id: shares
                    x: 4
                    width: parent.width - 8
                    spacing: 2

                    Rectangle {
                        visible: stack.modelData.dismissed > 0
                        width: parent.width
                        height: stack.share * stack.modelData.dismissed
                        radius: 3
                        color: "transparent"
                        border.width: 1
                        border.color: Theme.edge
                    }
                    Rectangle {
                        visible: stack.modelData.later > 0
                        width: parent.width
                        height: stack.share * stack.modelData.later
                        radius: 3
                        color: Theme.mid
                    }
                    Rectangle {
                        visible: stack.modelData.kept > 0
                        width: parent.width
                        height: stack.share * stack.modelData.kept
                        radius: 3
                        color: Theme.strong
                    }
                }
                ScoreBadge {
                    anchors.horizontalCenter: parent.horizontalCenter
                    y: chart.room + 12
                    look: stack.modelData.badge
                    size: 26
                    Accessible.ignored: true
                }
            }
        }
    }
}
