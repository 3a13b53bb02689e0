import QtQuick
import QtQuick.Templates as T
import Vorle

// A key and what it does, in one quiet line that can be pressed too.
T.AbstractButton {
    id: hint

    property string keys: ""

    implicitWidth: line.implicitWidth + 20
    implicitHeight: Theme.grown(32)
    hoverEnabled: true
    focusPolicy: Qt.TabFocus // a click leaves the keyboard where single keys decide
    Accessible.role: Accessible.Button
    Accessible.name: text
    Accessible.description: qsTr("Touche %1").arg(keys)
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

    Row {
        id: line
        anchors.centerIn: parent
        spacing: 9

        KeyCap {
            keys: hint.keys
            anchors.verticalCenter: parent.verticalCenter
        }
        Text {
            text: hint.text
            color: hint.hovered ? Theme.ink : Theme.inkSoft
            font.family: Theme.textFamily
            font.pixelSize: Theme.textNote
            textFormat: Text.PlainText
            anchors.verticalCenter: parent.verticalCenter
            Accessible.ignored: true
        }
    }
    background: Rectangle {
        radius: Theme.radiusButton
        color: hint.down ? Theme.sunken : hint.hovered ? Theme.hover : "transparent"

        FocusRing {
            radius: parent.radius + 3
            shown: hint.visualFocus
        }
    }
}
