import QtQuick
import Vorle
import Vorle.Models

// How much something matters, 1 to 5: the arrows and the digits set it.
Item {
    id: dots

    required property KeyboardMap keyboard
    required property string name
    required property int value
    readonly property int minimumValue: 1
    readonly property int maximumValue: 5
    readonly property int stepSize: 1

    signal picked(int weight)

    function pick(weight: int) {
        const held = Math.max(minimumValue, Math.min(maximumValue, weight));
        if (held !== value) {
            picked(held);
        }
    }

    implicitWidth: 5 * 11 + 4 * 7
    implicitHeight: 24
    Accessible.role: Accessible.Slider
    Accessible.name: qsTr("Importance : %1").arg(name)
    Accessible.description: qsTr("%1 sur 5").arg(value)
    Accessible.focusable: true
    Accessible.focused: activeFocus
    Accessible.onIncreaseAction: pick(value + 1)
    Accessible.onDecreaseAction: pick(value - 1)
    Keys.onLeftPressed: pick(value - 1)
    Keys.onRightPressed: pick(value + 1)
    Keys.onPressed: event => {
        const digit = keyboard.digit(event.key, event.modifiers);
        if (digit >= minimumValue && digit <= maximumValue) {
            pick(digit);
            event.accepted = true;
        }
    }

    Row {
        anchors.verticalCenter: parent.verticalCenter
        spacing: 7

        Repeater {
            model: 5

            Rectangle {
                id: dot
                required property int index
                readonly property bool on: index < dots.value
                width: 11
                height: 11
                radius: 5.5
                color: on ? Theme.strong : "transparent"
                border.width: on ? 0 : 1
                border.color: Theme.edge

                TapHandler {
                    margin: 5
                    onTapped: dots.pick(dot.index + 1)
                }
            }
        }
    }
    FocusRing {
        radius: 10
        anchors.leftMargin: -8
        anchors.rightMargin: -8
        shown: dots.activeFocus
    }
}
