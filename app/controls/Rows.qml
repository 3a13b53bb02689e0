import QtQuick
import Vorle

// Rows under each other, or pills in lines, that share one stop for the Tab key; the arrows walk
// among them. A delegate is an item with an `index`, whose `takeFocus()` gives it the keyboard.
// Where the row that has the keyboard goes, whoever took it away, the next one has it then.
Flow {
    id: rows

    property alias model: repeater.model
    property alias delegate: repeater.delegate
    readonly property int count: repeater.count
    property int here: 0 // the row that the Tab key stops at
    readonly property var drafts: Object.create(null) // what is being written in them (EditableRow)
    property string orphan: "" // says what was being written in a row that is gone

    signal emptied // the row that had the keyboard was the last
    signal steppedOut(int by) // an arrow led out, upwards or downwards

    property int vacated: -1 // where the row stood that went with the keyboard
    property string orphanKey: ""

    onCountChanged: here = Math.max(0, Math.min(here, count - 1))

    function take(index: int) {
        const to = Math.max(0, Math.min(index, count - 1));
        if (count > 0) {
            repeater.itemAt(to).takeFocus(); // qmllint disable
        }
        here = to; // now that what was stopped at has lost the keyboard
    }
    function step(from: int, by: int) {
        const to = from + by;
        if (to >= 0 && to < count) {
            take(to);
        } else {
            steppedOut(by);
        }
    }
    // Does what takes a row away. Not by the row itself, which is gone before it ends.
    function drop(remove: var) {
        remove();
        fill();
    }
    // Does what a row asked for, which gives why it cannot be, or "". By another name it is another
    // row: the one that asked is gone then.
    function change(asking: EditableRow, index: int, ask: var) {
        const had = asking.activeFocus;
        const refusal = ask();
        if (refusal.length > 0 || repeater.itemAt(index) === asking) {
            asking.settle(refusal);
        } else if (had) {
            take(index);
        }
        vacated = -1;
    }
    function holdsKeyboard(row: Item): bool {
        let at = Window.activeFocusItem;
        while (at !== null && at !== row) {
            at = at.parent;
        }
        return at !== null;
    }
    function fill() {
        const at = vacated;
        vacated = -1;
        if (at >= 0 && count > 0) {
            take(at);
        } else if (at >= 0) {
            emptied();
        }
    }
    // Takes what is being written in them; the first row that cannot be taken gets the keyboard.
    function settled(): bool {
        let open = null;
        for (let i = 0; i < count; ++i) {
            const row = repeater.itemAt(i) as EditableRow;
            if (row !== null && row.editing) {
                row.leave();
            }
            const now = repeater.itemAt(i) as EditableRow;
            open = open ?? (now !== null && now.editing ? now : null);
        }
        open?.edit();
        return open === null;
    }

    Repeater {
        id: repeater
        onItemRemoved: (index, item) => {
            const row = item as EditableRow;
            if (rows.holdsKeyboard(item)) {
                rows.vacated = index;
                Qt.callLater(rows.fill); // qmllint disable
            }
            if (row !== null && rows.drafts[row.key] !== undefined) {
                rows.orphanKey = row.key;
                rows.orphan = qsTr("« %1 » n’est plus là. Tu écrivais : « %2 »").arg(row.shown).arg(rows.drafts[row.key]);
            }
        }
        onItemAdded: (index, item) => {
            if ((item as EditableRow)?.key === rows.orphanKey) {
                rows.orphan = "";
            }
        }
    }
}
