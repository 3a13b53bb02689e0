import QtQuick
import Vorle

// A button in a row of pills.
Press {
    id: button

    implicitWidth: words.implicitWidth + 24
    implicitHeight: 30
    Accessible.role: Accessible.Button
    Accessible.name: text
    Accessible.onPressAction: clicked()

    Rectangle {
        anchors.fill: parent
        radius: height / 2
        color: button.hovered ? Theme.raised : "transparent"
        border.width: 1
        border.color: Theme.edge

        FocusRing {
            radius: height / 2
            shown: button.visualFocus
        }
    }
    Label {
        id: words
        anchors.fill: parent
        text: button.text
        color: Theme.inkSoft
        font.weight: Font.Medium
        font.pixelSize: Theme.textNote
        wrapMode: Text.NoWrap
        horizontalAlignment: Text.AlignHCenter
        verticalAlignment: Text.AlignVCenter
        lineHeight: 1
        Accessible.ignored: true
    }
}
