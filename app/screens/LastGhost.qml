import QtQuick
import Vorle
import Vorle.Models

// The line at the end of a list that tells where the last topic went, where no card stands beside
// it any more.
Item {
    id: slot

    required property ghost shownGhost
    property bool closes: false
    property real foldsFrom: 0
    property real inset: 0
    property string undoKeys: ""
    readonly property real toShrink: place.space - place.wholeSpace

    signal undo

    function arrive() {
        place.arrive();
    }

    height: place.space

    GhostPlace {
        id: place
        x: slot.inset
        width: parent.width - 2 * x
        shownGhost: slot.shownGhost
        closes: slot.closes
        foldsFrom: slot.foldsFrom
        undoKeys: slot.undoKeys
        onUndo: slot.undo()
    }
}
