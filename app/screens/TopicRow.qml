import QtQuick
import Vorle
import Vorle.Models

// One topic in its section's list: its card, and over or under it the line that tells where the
// last topic went.
Item {
    id: row

    required property int index
    required property topicCard topic
    required property TopicSelection selection
    // It keeps its height: rows that change together are laid out in one go.
    property bool held: false
    property bool tight: false // the window is low
    property bool tiny: false // as low as it gets
    property var actions: [] // CardButton
    property string undoKeys: ""

    readonly property string topicId: topic.topicId
    readonly property bool ghostAbove: selection.shownGhost.overId === topicId
    readonly property bool ghostBelow: selection.shownGhost.underId === topicId
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

    function arrive() {
        card.arrive();
    }

    height: held || topicId === selection.goneId ? lastHeight : shownHeight
    onHeightChanged: lastHeight = height

    Loader {
        id: ghostPlace

        readonly property real space: active ? (item as GhostLine).implicitHeight + Theme.cardGap : 0

        y: row.ghostBelow ? card.height + Theme.cardGap : 0
        width: parent.width
        active: row.ghostAbove || row.ghostBelow
        sourceComponent: GhostLine {
            went: row.selection.shownGhost.went
            title: row.selection.shownGhost.title
            undoKeys: row.undoKeys
            onUndo: row.act(KeyboardMap.Undo)
        }
    }
    TopicCard {
        id: card
        y: row.ghostAbove ? ghostPlace.space : 0
        still: row.selection.goneId !== ""
        tight: row.tight
        tiny: row.tiny
        width: parent.width
        topic: row.topic
        open: row.topicId === row.selection.shownId
        onOpenChanged: if (open) row.opened(card)
        Component.onDestruction: row.dropped(card)
        actions: row.actions
        onChosen: row.chosen()
        onEnlarged: row.enlarged()
        onAct: action => row.act(action)
    }
}
