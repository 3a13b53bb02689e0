import QtQuick
import QtQuick.Templates as T
import Vorle

// A small button of the side bar: a sign, named for who listens and for who points at it.
T.AbstractButton {
    id: button

    property string keys: "" // that do the same

    implicitWidth: 32
    implicitHeight: 32
    hoverEnabled: true
    focusPolicy: Qt.TabFocus // a click leaves the keyboard where single keys decide
    Accessible.role: Accessible.Button
    Accessible.name: text
    Accessible.description: keys.length > 0 ? qsTr("Touche %1").arg(keys) : ""
    Accessible.onPressAction: clicked()
    Keys.onReturnPressed: event => press(event)
    Keys.onEnterPressed: event => press(event)
    Keys.onSpacePressed: event => event.accepted = event.isAutoRepeat

    // With another key it is a shortcut, and held down it is one press.
    function press(event: KeyEvent) {
        if (event.isAutoRepeat || (event.modifiers & ~Qt.KeypadModifier)) {
            event.accepted = false;
        } else {
            clicked();
        }
    }

    background: Rectangle {
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
