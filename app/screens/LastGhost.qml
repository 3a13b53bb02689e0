import QtQuick
import Vorle
import Vorle.Models

// The line at the end of a list that tells where the last topic went, where no card stands beside
// it any more.
Item {
    id: slot

    required property ghost shownGhost
    property string undoKeys: ""

    signal undo

    height: line.visible ? line.height + Theme.cardGap : 0

    GhostLine {
        id: line
        width: parent.width
        visible: slot.shownGhost.alone
        went: slot.shownGhost.went
        title: slot.shownGhost.title
        undoKeys: slot.undoKeys
        onUndo: slot.undo()
    }
}
