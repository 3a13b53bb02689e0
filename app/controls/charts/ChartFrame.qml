import QtQuick
import Vorle

// The ground of a chart, part by part.
Item {
    id: chart

    required property var parts // of FigurePart
    property alias group: repeater.delegate // a ChartGroup
    readonly property real groupWidth: width / Math.max(1, parts.length)
    readonly property real room: 94 // of the highest bar
    readonly property real ground: 112

    implicitHeight: 136

    Rectangle {
        y: chart.ground
        width: parent.width
        height: 1
        color: Theme.line
    }
    Repeater {
        id: repeater
        model: chart.parts
    }
}
