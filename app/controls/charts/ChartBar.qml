import QtQuick
import Vorle

// One standing bar, its figure over it where there is room.
Item {
    id: bar

    required property real value
    required property real highest // the value as high as the chart
    required property real room // the chart's height without figures
    property string figure: ""
    property color fill: Theme.strong
    property bool hollow: false
    property color ink: Theme.inkSoft

    height: room + 18

    Rectangle {
        id: body
        anchors.bottom: parent.bottom
        width: parent.width
        height: bar.value > 0 ? Math.max(3, Math.round(bar.room * bar.value / Math.max(1, bar.highest))) : 0
        radius: 3
        color: bar.hollow ? "transparent" : bar.fill
        border.width: bar.hollow ? 1 : 0
        border.color: bar.fill
    }
    Label {
        anchors.horizontalCenter: parent.horizontalCenter
        anchors.bottom: body.top
        anchors.bottomMargin: 2
        visible: bar.value > 0 && bar.figure.length > 0
        text: bar.figure
        color: bar.ink
        font.pixelSize: Theme.textSmall
        lineHeight: 1
        wrapMode: Text.NoWrap
        Accessible.ignored: true
    }
}
