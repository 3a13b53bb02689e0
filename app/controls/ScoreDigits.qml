import QtQuick
import Vorle

// 0 to 10, one of which is the person's own score. One stop of Tab; digits and arrows choose.
FocusScope {
    id: digits

    property int score: -1 // none chosen yet
    property int appScore: -1 // vorle's own, marked; none where it is not told
    property bool typedOne: false // the last key was a 1

    // The digit row of a French keyboard gives digits with Shift alone.
    readonly property var french: [Qt.Key_Agrave, Qt.Key_Ampersand, Qt.Key_Eacute, Qt.Key_QuoteDbl, Qt.Key_Apostrophe, Qt.Key_ParenLeft, Qt.Key_Minus, Qt.Key_Egrave, Qt.Key_Underscore, Qt.Key_Ccedilla]

    implicitHeight: cells.implicitHeight
    Accessible.role: Accessible.Slider
    Accessible.name: score < 0 ? qsTr("Ta note : pas encore choisie") : qsTr("Ta note : %1 sur 10").arg(score)

    // Takes a digit or an arrow; whether it was one.
    function take(event: KeyEvent): bool {
        const digit = event.modifiers & Qt.ControlModifier ? -1 : digitOf(event.key);
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
    function digitOf(key: int): int {
        const mac = { [Qt.Key_section]: 6, [Qt.Key_Exclam]: 8 }; // where a Mac's differs
        return key >= Qt.Key_0 && key <= Qt.Key_9 ? key - Qt.Key_0 : mac[key] ?? french.indexOf(key);
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
