import QtQuick
import Vorle
import Vorle.Models

// One part of a chart: its place, and what it is called under its bars.
Item {
    id: group

    required property figurePart modelData
    required property int index
    required property ChartFrame frame

    x: index * frame.groupWidth
    width: frame.groupWidth
    height: frame.height

    Label {
        y: group.frame.ground + 6
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
