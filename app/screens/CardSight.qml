import QtQuick
import Vorle

// Keeps the chosen row of a list in view, and knows whether its card is: only what is seen may be
// decided. All is worked out from the heights that the rows are on their way to.
Item {
    id: sight

    required property ListView list
    required property real lead // room over the row, for its heading

    readonly property TopicRow row: list.currentItem as TopicRow
    property bool pulled: false // by its bar, which moves it without its saying so
    readonly property bool scrolling: list.moving || pulled // by hand
    // Whether the card stood in view when it was last looked at: it then stays there whatever the
    // list does. One that was scrolled away from is left where it is.
    property bool stands: true
    property bool browsed: false // by hand, since the view was last brought there
    property bool busy: false
    property real offset: NaN // where the card stood in the view
    // Where it is kept from then on: rows that are made around it take their places one by one.
    property real pinned: NaN
    property int pins: 0

    // How much the rows over that place are still to shrink.
    function toShrink(limit: real): real {
        let sum = 0;
        const rows = list.contentItem.children;
        for (let i = 0; i < rows.length; ++i) {
            const other = rows[i] as TopicRow;
            if (other && other.y < limit) {
                sum += other.height - other.wholeHeight;
            }
        }
        return sum;
    }
    // The same for all, with the line at the end.
    function allToShrink(): real {
        return toShrink(Infinity) + ((list.footerItem as LastGhost)?.toShrink ?? 0);
    }
    function cardTop(): real {
        return row.y - toShrink(row.y) + row.cardTop;
    }
    // Of a card that is higher than the view, its head counts; or that nothing else is seen.
    function holds(): bool {
        if (!row) {
            return true;
        }
        const top = cardTop() - list.contentY;
        const bottom = top + row.cardHeight;
        if (row.cardHeight <= list.height) {
            return top >= -1 && bottom <= list.height + 1;
        }
        return showsHead() || (top <= 1 && bottom >= list.height - 1);
    }
    // As the rows stand now, on their way.
    function partlySeen(): bool {
        const top = row.y + row.cardNow - list.contentY;
        return top < list.height && top + row.cardHeight > 0;
    }
    function showsHead(): bool {
        const top = cardTop() - list.contentY;
        return top >= -1 && top + row.headHeight <= list.height + 1;
    }
    // Where the view goes to show the card, moving as little as it can.
    function wanted(from: real): real {
        const top = cardTop();
        const bottom = top + row.cardHeight;
        // Where room is short, what stands around the card gives way to it.
        const spare = Math.max(0, list.height - row.cardHeight);
        const over = Math.min(row.cardTop + lead, spare);
        const under = Math.min(24, spare - over);
        let y = Math.min(top - over, Math.max(from, bottom + under - list.height));
        if (y - list.originY < 60 && bottom + 12 <= list.originY + list.height) {
            y = list.originY; // the first heading, wholly
        }
        return within(y);
    }
    function within(y: real): real {
        const end = list.originY + list.contentHeight - allToShrink() + list.bottomMargin - list.height;
        return Math.max(list.originY, Math.min(y, end));
    }
    function bring(moving: bool) {
        motion.stop();
        pinned = NaN;
        list.cancelFlick();
        if (!row) {
            return;
        }
        if (Math.abs(row.y - list.contentY) > 3 * list.height) {
            list.positionViewAtIndex(list.currentIndex, ListView.Contain);
            list.forceLayout();
        }
        const y = wanted(list.contentY);
        // What cannot be seen at all yet is there at once: a quick hand decides it next.
        if (moving && partlySeen() && Theme.fold > 0) {
            glide(y, Theme.fold);
        } else {
            list.contentY = y;
        }
        stands = true;
        browsed = false;
        later.restart();
    }
    function glide(y: real, length: int) {
        motion.to = y;
        motion.duration = length;
        motion.start();
    }
    // Before the list changes: where the card stands.
    function keep() {
        offset = row && stands && !motion.running ? row.y + row.cardNow - list.contentY : NaN;
    }
    // After it has: the card stands there again.
    function restore() {
        if (!row || !stands) {
            return;
        }
        // One that is higher than the view shows as much of itself as it can.
        if (isNaN(offset) || row.cardHeight > list.height) {
            bring(false);
            return;
        }
        // What closes over it or under it takes its time, and the card stays where it is meanwhile.
        const y = within(cardTop() - offset);
        if (Theme.calm > 0 && Math.abs(cardTop() - row.y - row.cardNow) > 1 && Math.abs(y - list.contentY) < list.height) {
            pinned = NaN;
            glide(y, Theme.calm);
            later.restart();
            return;
        }
        for (let i = 0; i < 2; ++i) { // far away, a row's place is a guess until it is gone to
            if (Math.abs(row.y + row.cardNow - offset - list.contentY) > list.height) {
                list.positionViewAtIndex(list.currentIndex, ListView.Contain);
            }
            list.contentY = within(row.y + row.cardNow - offset);
            list.forceLayout();
        }
        if (holds()) {
            pinned = offset;
            pins = 0;
        } else {
            list.contentY = wanted(list.contentY);
        }
        later.restart();
    }
    function pin() {
        const drift = row ? row.y + row.cardNow - list.contentY - pinned : NaN;
        if (Math.abs(drift) > 1 && !scrolling && !motion.running && ++pins < 20) {
            list.contentY = within(list.contentY + drift);
        }
    }
    // Ends all motion: the key that comes next is meant for where it leads.
    function arrive() {
        rest();
        list.forceLayout();
    }
    function rest() {
        const rows = list.contentItem.children;
        for (let i = 0; i < rows.length; ++i) {
            (rows[i] as TopicRow)?.arrive();
        }
        (list.footerItem as LastGhost)?.arrive();
        motion.complete();
    }
    // Whether the card may be decided. Where it may not, it is brought into view instead.
    function ready(): bool {
        if (!row) {
            return false;
        }
        arrive();
        if (holds()) {
            return true;
        }
        bring(true);
        return false;
    }
    // By hand.
    function browse() {
        stands = holds();
        browsed = true;
        pinned = NaN;
    }
    function look() {
        if (!busy && !isNaN(pinned)) {
            Qt.callLater(pin); // qmllint disable
        }
        if (stands && !busy && !motion.running && !later.running) {
            later.restart();
        }
    }

    onPulledChanged: browse()

    NumberAnimation {
        id: motion
        target: sight.list
        property: "contentY"
        easing.type: Easing.OutCubic
    }
    Timer {
        id: later
        interval: Theme.fold + Theme.reveal + 60
        onTriggered: {
            if (sight.row && sight.stands && !sight.scrolling && !(sight.holds() && (sight.browsed || sight.showsHead()))) {
                sight.bring(false);
            }
        }
    }
    Connections {
        target: sight.list

        function onContentYChanged() {
            if (sight.scrolling) {
                sight.browse();
            }
        }
        // The first step of a scroll comes before the list says that it moves.
        function onMovingChanged() {
            sight.browse();
        }
        function onHeightChanged() {
            if (sight.stands) {
                sight.bring(false);
            }
        }
    }
    Connections {
        target: sight.row

        function onYChanged() {
            sight.look();
        }
        function onWholeHeightChanged() {
            sight.look();
        }
    }
}
