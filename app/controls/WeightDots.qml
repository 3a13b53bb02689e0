import QtQuick
import Vorle

// How much something matters, 1 to 5: the arrows and the digits set it.
Item {
    id: dots

    required property string name
    required property int value
    readonly property int minimumValue: 1
    readonly property int maximumValue: 5
    readonly property int stepSize: 1
    // The digit row of a French keyboard gives digits with Shift alone.
    readonly property list<int> french: [Qt.Key_Ampersand, Qt.Key_Eacute, Qt.Key_QuoteDbl, Qt.Key_Apostrophe, Qt.Key_ParenLeft]

    signal picked(int weight)

    function digitOf(key: int): int {
        if (key >= Qt.Key_1 && key <= Qt.Key_5) {
            return key - Qt.Key_0;
        }
        for (let i = 0; i < french.length; ++i) {
            if (french[i] === key) {
                return i + 1;
            }
        }
        return 0;
    }
    function pick(weight: int) {
        const held = Math.max(minimumValue, Math.min(maximumValue, weight));
        if (held !== value) {
            picked(held);
        }
    }

    implicitWidth: 5 * 11 + 4 * 7
    implicitHeight: 24
    Accessible.role: Accessible.Slider
    Accessible.name: qsTr("Importance de %1").arg(name)
    Accessible.description: qsTr("importance %1 sur 5").arg(value)
    Accessible.focusable: true
    Accessible.focused: activeFocus
    Accessible.onIncreaseAction: pick(value + 1)
    Accessible.onDecreaseAction: pick(value - 1)
    Keys.onLeftPressed: pick(value - 1)
    Keys.onRightPressed: pick(value + 1)
    Keys.onPressed: event => {
        const digit = event.modifiers & ~(Qt.KeypadModifier | Qt.ShiftModifier) ? 0 : digitOf(event.key);
        if (digit > 0) {
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
