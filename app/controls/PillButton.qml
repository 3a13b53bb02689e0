import QtQuick
import QtQuick.Templates as T
import Vorle

// A button in a row of pills.
T.AbstractButton {
    id: button

    implicitWidth: contentItem.implicitWidth + 24
    implicitHeight: 30
    hoverEnabled: true
    focusPolicy: Qt.TabFocus
    Accessible.role: Accessible.Button
    Accessible.name: text
    Accessible.onPressAction: clicked()
    Keys.onReturnPressed: event => press(event)
    Keys.onEnterPressed: event => press(event)

    function press(event: KeyEvent) {
        event.accepted = !event.isAutoRepeat && !(event.modifiers & ~Qt.KeypadModifier);
        if (event.accepted) {
            clicked();
        }
    }

    background: Rectangle {
        radius: height / 2
        color: button.hovered ? Theme.raised : "transparent"
        border.width: 1
        border.color: Theme.edge

        FocusRing {
            radius: height / 2
            shown: button.visualFocus
        }
    }
    contentItem: Label {
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
