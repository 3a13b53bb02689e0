import QtQuick
import Vorle

// Rows under each other, or pills in lines, that share one stop for the Tab key; the arrows walk
// among them. A delegate is an item with an `index`, whose `takeFocus()` gives it the keyboard.
Flow {
    id: rows

    property alias model: repeater.model
    property alias delegate: repeater.delegate
    readonly property int count: repeater.count
    property int here: 0 // the row that the Tab key stops at

    signal emptied // the row that had the keyboard was the last
    signal steppedOut(int by) // an arrow led out, upwards or downwards

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
    // Does what takes a row away. Where it had the keyboard, the next one has it then. Not by the
    // row itself, which is gone before it ends.
    function drop(index: int, remove: var) {
        const had = (repeater.itemAt(index) as Item).activeFocus;
        remove();
        if (had && count > 0) {
            take(index);
        } else if (had) {
            emptied();
        }
    }

    Repeater {
        id: repeater
    }
}
