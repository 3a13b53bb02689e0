import QtQuick
import Vorle
import Vorle.Models

// 0 to 10, one of which is the person's own score. One stop of Tab; digits and arrows choose.
FocusScope {
    id: digits

    required property KeyboardMap keyboard
    property int score: -1 // none chosen yet
    property int appScore: -1 // vorle's own, marked; none where it is not told
    property bool typedOne: false // the last key was a 1

    implicitHeight: cells.implicitHeight
    Accessible.role: Accessible.Slider
    Accessible.name: score < 0 ? qsTr("Ta note : pas encore choisie") : qsTr("Ta note : %1 sur 10").arg(score)

    // Takes a digit or an arrow; whether it was one.
    function take(event: KeyEvent): bool {
        const digit = keyboard.digit(event.key, event.modifiers);
        const ten = digit === 0 && typedOne; // "1" then "0"
        typedOne = digit === 1;
        if (digit >= 0) {
            score = ten ? 10 : digit;
        } else if (event.key === Qt.Key_Left) {
            score = Math.max(0, score - 1);
        } else if (event.key === Qt.Key_Right) {
            score = Math.min(10, score + 1);
        } else {
            return false;
        }
        return true;
    }

    Flow {
        id: cells
        width: parent.width
        spacing: 6

        Repeater {
            model: 11

            Rectangle {
                id: digit
                required property int index
                width: 40
                height: 40
                radius: 20
                color: digits.score === index ? Theme.accent : digitHover.hovered ? Theme.sunken : "transparent"
                border.width: 1
                border.color: digits.score === index ? Theme.accent : digits.appScore === index ? Theme.inkFaint : Theme.line

                Text {
                    anchors.centerIn: parent
                    text: digit.index
                    color: digits.score === digit.index ? Theme.accentInk : Theme.inkSoft
                    font.family: Theme.displayFamily
                    font.pixelSize: Theme.textLarge
                    font.weight: Font.Bold
                    Accessible.ignored: true
                }
                HoverHandler {
                    id: digitHover
                }
                TapHandler {
                    onTapped: digits.score = digit.index
                }
            }
        }
    }
}
