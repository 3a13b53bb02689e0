import QtQuick
import Vorle

// The keyboard may walk below the fold: what it reaches is brought into sight.
QtObject {
    required property Flickable view
    required property Item focused // what has the keyboard; null to stay

    onFocusedChanged: {
        let above = focused;
        while (above && above !== view.contentItem) {
            above = above.parent;
        }
        if (above) {
            const top = focused.mapToItem(view.contentItem, 0, 0).y;
            scrollTo(Math.max(top + focused.height + 24 - view.height, Math.min(view.contentY, top - 24)));
        }
    }

    function scrollTo(wanted: real) {
        view.contentY = Math.max(0, Math.min(Math.max(0, view.contentHeight - view.height), wanted));
    }
    function scrollBy(step: real) {
        scrollTo(view.contentY + step);
    }
}
