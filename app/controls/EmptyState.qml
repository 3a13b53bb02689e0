import QtQuick
import Vorle
import Vorle.Models

// An empty or finished section: a sentence set like a page of a book, and what can be done. Where
// everything is sorted, what came of it stands between them. In a low window what is said comes
// before what is drawn.
Item {
    id: empty

    property string title: ""
    property string text: ""
    property var buttons: [] // CardButton
    property string tally: "" // see TriageEnd
    property var groups: [] // SortedGroup
    property string undoKeys: ""
    property real lineRoom: 0 // of the line that the last topic left, where it is still there

    readonly property bool counted: groups.length > 0
    readonly property bool narrow: width < 620
    readonly property bool low: height < Theme.grown(460)
    readonly property int gap: low ? 10 : 16
    // What has to be seen, and with the discs.
    readonly property real wordsHeight: head.implicitHeight + (counted ? sum.implicitHeight + gap : 0) + (text.length > 0 ? words.implicitHeight + gap : 0) + (buttons.length > 0 ? choices.implicitHeight + gap : 0)
    readonly property real needed: wordsHeight + (counted ? board.implicitHeight + 2 * gap : 0)
    readonly property bool drawn: counted && needed <= height
    readonly property real over: besideLine ? lineRoom : 0
    readonly property bool watched: over + needed + face.size + gap + 8 <= height
    readonly property bool hinted: counted && over + needed + (watched ? face.size + gap : 0) + hint.implicitHeight + gap + 8 <= height
    readonly property bool besideLine: needed + lineRoom <= height
    property Item aim: null // the button that one is about to press

    signal act(int action)

    // It was just reached.
    function land() {
        board.land();
    }
    function point(button: Item, at: bool) {
        if (at) {
            aim = button;
        } else if (aim === button) {
            aim = null;
        }
        const to = aim === null ? null : aim.mapToItem(face, aim.width / 2 - face.width / 2, aim.height / 2 - face.height / 2);
        const far = to === null ? 1 : Math.hypot(to.x, to.y);
        face.look = to === null || far === 0 ? Qt.point(0, 0) : Qt.point(to.x / far, to.y / far);
    }

    TextMetrics {
        id: whole
        font: words.font
        text: empty.text
    }
    Column {
        id: page

        readonly property real middle: (empty.height - height) / 2 - (empty.low ? 0 : Math.min(24, (empty.height - height) / 2))

        anchors.horizontalCenter: parent.horizontalCenter
        y: empty.besideLine ? Math.max(empty.lineRoom, middle) : middle
        width: Math.min(parent.width - 2 * Theme.margin, empty.counted ? 760 : 460)
        spacing: empty.gap
        opacity: empty.counted && board.clock < Theme.landing ? Math.min(1, Math.max(0, board.clock - Theme.landsAfter / 2) / Theme.lands) : 1

        Mascot {
            id: face
            visible: empty.watched
            anchors.horizontalCenter: parent.horizontalCenter
            size: empty.counted && !empty.low ? 56 : 46
            alive: empty.visible && empty.enabled
        }
        Title {
            id: head
            width: parent.width
            text: empty.title
            size: empty.counted && !empty.narrow ? Theme.scaled(30) : Theme.titleOpen
            horizontalAlignment: Text.AlignHCenter
        }
        Label {
            id: sum
            visible: empty.counted
            width: parent.width
            text: empty.tally
            font.pixelSize: empty.low ? Theme.textLarge : Theme.textReading
            horizontalAlignment: Text.AlignHCenter
        }
        Item {
            visible: empty.drawn
            width: parent.width
            implicitHeight: board.implicitHeight + empty.gap

            SortedBadges {
                id: board
                y: empty.gap / 2
                width: parent.width
                groups: empty.groups
                small: empty.low || empty.narrow
            }
        }
        Label {
            id: words

            // Lines of about one length: a last word of its own looks like a mistake.
            readonly property real lines: Math.max(1, Math.ceil(whole.advanceWidth / parent.width))

            visible: text.length > 0
            anchors.horizontalCenter: parent.horizontalCenter
            width: Math.min(parent.width, Math.ceil(whole.advanceWidth / lines) + 40)
            text: empty.text
            color: Theme.inkSoft
            font.pixelSize: empty.counted ? Theme.textCard : Theme.textLarge
            horizontalAlignment: Text.AlignHCenter
        }
        Row {
            id: choices
            anchors.horizontalCenter: parent.horizontalCenter
            topPadding: empty.low ? 0 : 6
            spacing: 10

            Repeater {
                model: empty.buttons

                ActionButton {
                    id: choice
                    required property cardButton modelData
                    text: modelData.text
                    primary: modelData.primary
                    onClicked: empty.act(modelData.action)
                    onHoveredChanged: empty.point(choice, hovered || activeFocus)
                    onActiveFocusChanged: empty.point(choice, hovered || activeFocus)
                }
            }
        }
        KeyHint {
            id: hint
            visible: empty.hinted
            anchors.horizontalCenter: parent.horizontalCenter
            keys: empty.undoKeys
            text: qsTr("annule le dernier tri")
            onClicked: empty.act(KeyboardMap.Undo)
            onHoveredChanged: empty.point(hint, hovered || activeFocus)
            onActiveFocusChanged: empty.point(hint, hovered || activeFocus)
        }
    }
}
