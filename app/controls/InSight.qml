import QtQuick
import Vorle

// The keyboard may walk below the fold: what it reaches is brought into sight.
QtObject {
    required property Flickable view
    property Item focused: null // what has the keyboard; null to stay

    onFocusedChanged: {
        let above = focused;
        while (above && above !== view.contentItem) {
            above = above.parent;
        }
        if (above) {
            show(focused, 0, focused.height);
        }
    }
    // Brings that part of an item into view, and what lies around it.
    function show(item: Item, from: real, height: real) {
        const top = item.mapToItem(view.contentItem, 0, from).y;
        scrollTo(Math.max(top + height + 24 - view.height, Math.min(view.contentY, top - 24)));
    }

    function scrollTo(wanted: real) {
        const end = view.originY + view.contentHeight + view.bottomMargin - view.height;
        view.contentY = Math.max(view.originY, Math.min(end, wanted));
    }
    function scrollBy(step: real) {
        scrollTo(view.contentY + step);
    }
    // The keys for long pages; whether it was one of them.
    function takes(key: int): bool {
        const steps = {
            [Qt.Key_Home]: -Infinity,
            [Qt.Key_End]: Infinity,
            [Qt.Key_PageUp]: -0.9 * view.height,
            [Qt.Key_PageDown]: 0.9 * view.height
        };
        if (!(key in steps)) {
            return false;
        }
        const list = view as ListView;
        if (list && key === Qt.Key_Home) {
            list.positionViewAtBeginning(); // it guesses how long it is until it gets there
        } else if (list && key === Qt.Key_End) {
            list.positionViewAtEnd();
        } else {
            scrollBy(steps[key]);
        }
        return true;
    }
}
