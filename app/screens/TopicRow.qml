import QtQuick
import Vorle

// One topic in its section's list: its card, and over or under it the line that tells where the
// last topic went.
Item {
    id: row

    required property int index
    required property var model
    required property string shownId // the topic whose card stands open
    required property var ghost // { topicId, went, title, beforeId, afterId }, or null
    required property bool still // nothing moves
    // It keeps its height: rows that change together are laid out in one go.
    required property bool held
    property bool tight: false // the window is low
    property var actions: []
    property string undoKeys: ""

    readonly property var topic: model
    readonly property string topicId: model.topicId ?? "" // none once the row is gone
    readonly property bool ghostAbove: ghost !== null && topicId.length > 0 && ghost.beforeId === topicId
    readonly property bool ghostBelow: ghost !== null && topicId.length > 0 && ghost.afterId === topicId
    readonly property real shownHeight: card.height + Theme.cardGap + ghostPlace.space
    // Where the card stands in the row, and how high it is once nothing moves any more.
    readonly property real wholeHeight: card.wholeHeight + Theme.cardGap + ghostPlace.space
    readonly property real cardTop: card.y
    readonly property real cardHeight: card.wholeHeight
    readonly property real headHeight: card.headHeight
    property real lastHeight: 0

    signal opened(TopicCard card)
    signal dropped(TopicCard card)
    signal chosen
    signal enlarged
    signal act(int action)
    signal undoAsked

    function arrive() {
        card.arrive();
    }

    height: held ? lastHeight : shownHeight
    onHeightChanged: lastHeight = height

    Loader {
        id: ghostPlace

        readonly property real space: active ? (item as GhostLine).implicitHeight + Theme.cardGap : 0

        y: row.ghostBelow ? card.height + Theme.cardGap : 0
        width: parent.width
        active: row.ghostAbove || row.ghostBelow
        sourceComponent: GhostLine {
            went: row.ghost?.went ?? ""
            title: row.ghost?.title ?? ""
            undoKeys: row.undoKeys
            onUndo: row.undoAsked()
        }
    }
    TopicCard {
        id: card
        y: row.ghostAbove ? ghostPlace.space : 0
        low: row.model.waits ?? false
        still: row.still
        tight: row.tight
        width: parent.width
        topic: row.model
        open: row.topicId.length > 0 && row.topicId === row.shownId
        onOpenChanged: if (open) row.opened(card)
        Component.onDestruction: row.dropped(card)
        actions: row.actions
        onChosen: row.chosen()
        onEnlarged: row.enlarged()
        onAct: action => row.act(action)
    }
}
