import QtQuick
import Vorle

// What the keys do here, along the bottom.
Item {
    id: hint

    property alias text: words.text

    implicitHeight: Theme.grown(44)

    Rectangle {
        anchors.left: parent.left
        anchors.right: parent.right
        height: 1
        color: Theme.line
    }
    Label {
        id: words
        anchors.centerIn: parent
        width: parent.width - 24
        horizontalAlignment: Text.AlignHCenter
        color: Theme.inkFaint
        font.pixelSize: Theme.textNote
        fontSizeMode: Theme.fitting(text, Theme.textNote, width) // all of it, in however narrow a window
        minimumPixelSize: 9
        wrapMode: Text.NoWrap
    }
}
