import QtQuick
import Vorle
import Vorle.Models

// Where the decided topic went, in the place it left: its card folds to this line, which leans
// towards the menu, and closes again after a while.
Item {
    id: line

    required property ghost told // also while it closes
    property string undoKeys: ""
    property real foldsFrom: 0 // the height of the card that went; 0: the line stood there before
    // What it takes now, with the gap under it, and once nothing moves any more.
    property real space: wholeSpace
    readonly property real wholeSpace: Theme.ghostHeight + Theme.cardGap

    signal undo
    signal closed

    property real clock: 0 // ms
    property real spaceFrom: 0
    property real folded: 1 // how far the card has
    property real gone: 1 // how little of it is still seen; then the line is
    property real lean: 0
    property bool closing: false
    property bool opened: true // the card that went stood open, and not beside its page

    implicitHeight: Math.max(0, space - Theme.cardGap)
    onClockChanged: if (motion.running) follow()
    Component.onCompleted: fold(foldsFrom + Theme.cardGap)

    // Another card went, beside the same one.
    function tellNext() {
        fold(space + foldsFrom + Theme.cardGap);
    }
    function fold(from: real) {
        motion.stop();
        closing = false;
        opened = foldsFrom > 1.4 * (Math.max(40, Theme.scaled(40)) + 36); // a closed one is so high
        if (foldsFrom > 0 && Theme.fold > 0) {
            run(from, Theme.fold + Theme.reveal);
        } else {
            rest();
        }
    }
    function close() {
        motion.stop();
        closing = true;
        if (Theme.calm > 0) {
            run(space, Theme.calm);
        } else {
            rest();
        }
    }
    function run(from: real, length: int) {
        spaceFrom = from;
        clock = 0;
        motion.to = length;
        motion.start();
        follow();
    }
    function follow() {
        const way = Theme.eased(clock, closing ? Theme.calm : Theme.fold);
        space = spaceFrom + ((closing ? 0 : wholeSpace) - spaceFrom) * way;
        folded = closing ? 1 : way;
        gone = closing ? 1 : Math.min(1, clock / Theme.fold);
        lean = closing ? 0 : -14 * Math.sin(Math.PI * Math.max(0, Math.min(1, (clock - Theme.fold / 2) / (Theme.fold / 2 + Theme.reveal))));
    }
    function rest() {
        space = closing ? 0 : wholeSpace;
        folded = 1;
        gone = 1;
        lean = 0;
        if (closing) {
            closed();
        }
    }
    // Ends what moves, as the next key does.
    function arrive() {
        if (motion.running) {
            motion.stop();
            rest();
        }
    }

    NumberAnimation {
        id: motion
        target: line
        property: "clock"
        from: 0
        duration: to
        onFinished: line.rest()
    }

    // The card that goes, as far as it is still to be seen.
    Loader {
        active: line.gone < 1
        width: parent.width
        height: parent.height
        opacity: Math.max(0, 1 - 1.6 * line.gone)
        sourceComponent: Rectangle {
            radius: Theme.radiusCard
            color: Theme.card
            border.width: 1
            border.color: Theme.line
            clip: true
            Accessible.ignored: true

            ScoreBadge {
                x: line.opened ? 22 - 2 * line.folded : 20
                y: (line.opened ? 20 : 18) * (1 - line.folded)
                size: line.opened ? 64 - 24 * line.folded : 40
                look: line.told.card.badge
                Accessible.ignored: true
            }
            CardHead {
                id: head
                x: line.opened ? 106 : 76
                y: (line.opened ? 20 : 18) * (1 - line.folded)
                width: parent.width - x - (line.opened ? 24 : 20)
                topic: line.told.card
                open: line.opened
            }
            Label {
                x: head.x
                y: head.y + head.height + 40
                visible: line.opened
                width: head.width
                opacity: 1 - Math.min(1, 3 * line.gone)
                text: line.told.card.gist
                color: Theme.inkSoft
                font.pixelSize: Theme.textCard
                maximumLineCount: 2
                elide: Text.ElideRight
                Accessible.ignored: true
            }
        }
    }
    Rectangle {
        id: face
        x: line.lean
        width: parent.width
        height: parent.height
        radius: Math.min(Theme.radiusCard - 4, height / 2)
        color: "transparent"
        border.width: 1
        border.color: Theme.line
        opacity: line.closing ? Math.max(0, 2 * line.space / line.wholeSpace - 1) : Math.max(0, 2.6 * line.gone - 1.6)
        Accessible.role: Accessible.Grouping // no alert: the decision is said already (Voice)
        Accessible.name: line.told.went + ", " + line.told.title

        Row {
            anchors.left: parent.left
            anchors.leftMargin: 22
            anchors.right: keys.left
            anchors.rightMargin: 12
            anchors.verticalCenter: parent.verticalCenter
            spacing: 10

            Text {
                id: tick
                text: "✓"
                color: Theme.accent
                font.family: Theme.textFamily
                font.pixelSize: Theme.textBody
                font.weight: Font.Bold
                Accessible.ignored: true
            }
            Text {
                id: where
                text: line.told.went
                color: Theme.inkSoft
                font.family: Theme.textFamily
                font.pixelSize: Theme.textBody
                font.weight: Font.DemiBold
                textFormat: Text.PlainText
                Accessible.ignored: true
            }
            Text {
                width: Math.max(0, parent.width - tick.width - where.width - 20)
                text: line.told.title
                elide: Text.ElideRight
                horizontalAlignment: Text.AlignLeft
                maximumLineCount: 1
                color: Theme.inkFaint
                font.family: Theme.textFamily
                font.pixelSize: Theme.textBody
                textFormat: Text.PlainText
                Accessible.ignored: true
            }
        }
        ActionButton {
            id: keys
            anchors.right: parent.right
            anchors.rightMargin: 8
            anchors.verticalCenter: parent.verticalCenter
            implicitHeight: Theme.grown(32)
            quiet: true
            activeFocusOnTab: false
            keys: line.undoKeys
            text: qsTr("Annuler")
            font.pixelSize: Theme.textNote
            onClicked: line.undo()
        }
    }
}
