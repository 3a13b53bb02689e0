import QtQuick
import Vorle

// Looks like the field it opens.
Press {
    id: button

    implicitWidth: 252
    implicitHeight: Theme.grown(42)
    text: qsTr("Rechercher")
    Accessible.role: Accessible.Button
    Accessible.name: text
    Accessible.onPressAction: clicked()

    Rectangle {
        anchors.fill: parent
        radius: height / 2
        color: button.hovered ? Theme.raised : Theme.card
        border.width: 1
        border.color: button.hovered ? Theme.inkFaint : Theme.line

        FocusRing {
            radius: parent.radius + 3
            shown: button.visualFocus
        }
    }
    Label {
        x: 18
        anchors.verticalCenter: parent.verticalCenter
        text: button.text
        color: Theme.inkFaint
        wrapMode: Text.NoWrap
        lineHeight: 1
        Accessible.ignored: true
    }
    KeyCap {
        anchors.right: parent.right
        anchors.rightMargin: 14
        anchors.verticalCenter: parent.verticalCenter
        keys: button.keys
        bare: true
    }
}
