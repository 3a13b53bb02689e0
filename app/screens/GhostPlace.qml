import QtQuick
import Vorle
import Vorle.Models

// Beside a card, or at a list's end: the place of the line that a decided topic leaves, empty most
// of the time.
Loader {
    id: place

    required property ghost shownGhost
    property string besideId: "" // the topic whose card it stands beside; "" at the list's end
    readonly property bool here: isHere() // the line is this place's
    property bool closes: false // where it goes, it closes; else something else takes its room
    property real foldsFrom: 0
    property string undoKeys: ""
    readonly property GhostLine line: item as GhostLine
    readonly property real space: line?.space ?? 0
    readonly property real wholeSpace: here ? Theme.ghostHeight + Theme.cardGap : 0

    signal undo

    property bool kept: false
    property ghost told // by its line, also while that closes

    function isHere(): bool {
        return besideId === "" ? shownGhost.alone : shownGhost.overId === besideId || shownGhost.underId === besideId;
    }
    function follow() {
        if (isHere()) {
            const another = shownGhost.topicId !== told.topicId;
            told = shownGhost;
            if (line === null) {
                kept = true;
            } else if (another) {
                line.tellNext();
            }
        } else if (line !== null && closes) {
            line.close();
        } else {
            kept = false;
        }
    }
    function arrive() {
        line?.arrive();
    }

    active: kept
    height: line?.implicitHeight ?? 0
    onShownGhostChanged: follow()
    Component.onCompleted: follow()
    sourceComponent: GhostLine {
        told: place.told
        foldsFrom: place.foldsFrom
        undoKeys: place.undoKeys
        onUndo: place.undo()
        onClosed: place.kept = false
    }
}
