import QtQuick
import Vorle

// The line at the end of a list that tells where the last topic went, where no card stands beside
// it any more.
Item {
    id: place

    required property var ghost // { topicId, went, title, beforeId, afterId }, or null
    property string undoKeys: ""

    signal undo

    height: line.visible ? line.height + Theme.cardGap : 0

    GhostLine {
        id: line
        width: parent.width
        visible: place.ghost !== null && place.ghost.beforeId === "" && place.ghost.afterId === ""
        went: place.ghost?.went ?? ""
        title: place.ghost?.title ?? ""
        undoKeys: place.undoKeys
        onUndo: place.undo()
    }
}
