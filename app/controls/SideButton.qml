import QtQuick
import Vorle

// A small button of the side bar: the sign put into it, named for who listens and for who points at
// it.
Press {
    id: button

    implicitWidth: 32
    implicitHeight: 32
    Accessible.role: Accessible.Button
    Accessible.name: text
    Accessible.description: keys.length > 0 ? qsTr("Touche %1").arg(keys) : ""
    Accessible.onPressAction: clicked()

    Rectangle {
        anchors.fill: parent
        radius: Theme.radiusButton
        color: button.hovered || button.down ? Theme.hover : "transparent"
        border.width: button.hovered ? 1 : 0
        border.color: Theme.line

        FocusRing {
            radius: parent.radius + 3
            shown: button.visualFocus
        }
    }
}
