import QtQuick
import Vorle

// What a colour of a chart stands for.
Row {
    id: mark

    required property string name
    required property color fill
    property bool hollow: false

    spacing: 6

    Rectangle {
        width: 10
        height: 10
        radius: 3
        anchors.verticalCenter: parent.verticalCenter
        color: mark.hollow ? "transparent" : mark.fill
        border.width: mark.hollow ? 1 : 0
        border.color: mark.fill
    }
    Label {
        text: mark.name
        color: Theme.inkFaint
        font.pixelSize: Theme.textNote
        wrapMode: Text.NoWrap
        Accessible.ignored: true
    }
}
