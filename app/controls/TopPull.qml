import QtQuick
import Vorle

// Brings a list's first heading wholly back into sight where the chosen row leaves room for it.
Item {
    id: pull

    required property ListView list

    // Once the rows have moved to their places.
    function soon() {
        away.restart();
    }

    Timer {
        id: away
        interval: Theme.calm + 60
        onTriggered: {
            const list = pull.list;
            const hidden = list.contentY - list.originY;
            const bottom = list.currentItem ? list.currentItem.y + list.currentItem.height - list.originY : 0;
            if (hidden > 0 && hidden < 60 && bottom + 12 <= list.height) {
                toTop.start();
            }
        }
    }
    NumberAnimation {
        id: toTop
        target: pull.list
        property: "contentY"
        to: pull.list.originY
        duration: Theme.calm
    }
}
