import QtQuick
import Vorle
import Vorle.Models

// The line at the end of a list that tells where the last topic went, where no card stands beside
// it any more.
Item {
    id: place

    required property ghost shownGhost
    property string undoKeys: ""

    signal undo

    height: line.visible ? line.height + Theme.cardGap : 0

    GhostLine {
        id: line
        width: parent.width
        visible: place.shownGhost.alone
        went: place.shownGhost.went
        title: place.shownGhost.title
        undoKeys: place.undoKeys
        onUndo: place.undo()
    }
}
