import QtQuick
import Vorle
import Vorle.Models

// Beside a card, or at a list's end: the place of the line that a decided topic leaves, empty most
// of the time.
Loader {
    id: place

    required property ghost shownGhost
    required property bool here // the line is this place's
    property bool closes: false // where it goes, it closes; else something else takes its room
    property real foldsFrom: 0
    property string undoKeys: ""
    readonly property GhostLine line: item as GhostLine
    readonly property real space: line?.space ?? 0
    readonly property real wholeSpace: here ? Theme.ghostHeight + Theme.cardGap : 0

    signal undo

    property bool kept: false

    function follow() {
        if (here) {
            kept = true;
            line?.tell();
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
    onHereChanged: follow()
    Component.onCompleted: follow()
    sourceComponent: GhostLine {
        shownGhost: place.shownGhost
        foldsFrom: place.foldsFrom
        undoKeys: place.undoKeys
        onUndo: place.undo()
        onClosed: place.kept = false
    }
}
