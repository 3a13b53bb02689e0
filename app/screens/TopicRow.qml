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
    property bool paged: false // the chosen one's page stands beside the list: its card is closed
    property bool ghostCloses: false // see GhostPlace
    property real foldsFrom: 0
    property real inset: 0 // of the cards, from both sides
    property var actions: [] // CardButton
    property string undoKeys: ""
    property string place: "" // see TopicCard
    property bool attended: false

    readonly property string topicId: topic.topicId
    // One that went stays as it stood until it is taken away.
    readonly property bool shown: topicId === (index < 0 ? selection.goneId : selection.shownId)
    readonly property bool ghostAbove: selection.shownGhost.overId === topicId
    readonly property bool ghostBelow: selection.shownGhost.underId === topicId
    property bool ghostUnder: false // also while it closes
    readonly property real shownHeight: card.height + Theme.cardGap + ghostPlace.space
    // How high it is once nothing moves any more, and where its card then stands in it.
    readonly property real wholeHeight: card.wholeHeight + Theme.cardGap + ghostPlace.wholeSpace
    readonly property real cardTop: ghostAbove ? ghostPlace.wholeSpace : 0
    readonly property real cardHeight: card.wholeHeight
    readonly property real headHeight: card.headHeight
    // Where it stands in it now.
    readonly property real cardNow: card.y
    readonly property real cardNowHeight: card.height
    property real lastHeight: 0

    signal opened(TopicCard card)
    signal dropped(TopicCard card)
    signal chosen
    signal enlarged
    signal act(int action)
    signal menuAsked(point at)
    signal carried

    function arrive() {
        card.arrive();
        ghostPlace.arrive();
    }
    // The topic is back where its line stood.
    function unfold() {
        card.arrange();
        card.unfold(Theme.ghostHeight);
    }

    height: held || topicId === selection.goneId ? lastHeight : shownHeight
    onHeightChanged: lastHeight = height
    onGhostAboveChanged: if (ghostAbove) ghostUnder = false
    onGhostBelowChanged: if (ghostBelow) ghostUnder = true

    GhostPlace {
        id: ghostPlace
        x: row.inset
        y: row.ghostUnder ? card.height + Theme.cardGap : 0
        width: parent.width - 2 * x
        shownGhost: row.selection.shownGhost
        besideId: row.topicId
        closes: row.ghostCloses
        foldsFrom: row.foldsFrom
        undoKeys: row.undoKeys
        onUndo: row.act(KeyboardMap.Undo)
    }
    TopicCard {
        id: card
        x: row.inset
        y: row.ghostUnder ? 0 : ghostPlace.space
        late: row.selection.goneId !== ""
        tight: row.tight
        tiny: row.tiny
        width: parent.width - 2 * x
        topic: row.topic
        place: row.place
        attended: row.attended
        open: row.shown && !row.paged
        outlined: row.shown
        onOpenChanged: if (open) row.opened(card)
        Component.onDestruction: row.dropped(card)
        actions: row.actions
        onChosen: row.chosen()
        onEnlarged: row.enlarged()
        onAct: action => row.act(action)
        onMenuAsked: at => row.menuAsked(at)
        onCarried: row.carried()
    }
}
