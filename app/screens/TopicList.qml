import QtQuick
import Vorle
import Vorle.Models

// The cards of a section. They follow what is chosen once a change is through, all in one layout:
// the next card opens in the place of the one that went, together with the line that stays.
ListView {
    id: list

    required property Shell shell
    required property TopicSelection selection
    readonly property TopicRow row: currentItem as TopicRow
    // The cards' column, in the middle; the list is as wide as the window, for the wheel.
    readonly property real inset: Math.max(Theme.margin, (width - Theme.columnWidth) / 2)
    readonly property bool filled: count > 0 || selection.shownGhost.shown // with cards, or the last line
    property bool sized: false // what is around it has its size, and so has it
    property bool attended: false // the keyboard rests where it acts on the chosen topic
    property bool paged: false // the chosen topic's page stands beside the list
    readonly property string undoKeys: shell.keyboard.keys(KeyboardMap.Undo)
    property TopicCard openCard: null
    property TopicCard closing: null // the one that stood open before
    // The rows keep their heights: what changes in several of them is laid out in one go.
    property bool held: false
    property bool ghostCloses: false // with what goes on now
    property real foldsFrom: 0 // the height of the card that may go

    signal act(int action)
    signal chosen // by the mouse
    signal menuAsked(topicCard topic, point at) // of the chosen topic, in the window

    // Whether the chosen topic's card is in view, or its page open; else it is brought there.
    function ready(): bool {
        selection.settle(); // keys may come faster than frames
        if (selection.shownId === "" || (selection.enlarged && !paged)) {
            return selection.shownId !== "";
        }
        return sight.ready() || paged;
    }

    function placeOf(row: int): string {
        const grouped = number => number.toLocaleString(Qt.locale("fr_FR"), "f", 0);
        return qsTr("%1 sur %2").arg(grouped(row + 1)).arg(grouped(count));
    }

    clip: true
    model: sized ? selection.list : null
    spacing: 0
    bottomMargin: 24
    boundsBehavior: Flickable.StopAtBounds
    interactive: !mouse.active // its wheel scrolls; pulled, a card’s link comes off
    keyNavigationEnabled: false
    highlightFollowsCurrentItem: false // the view moves as `sight` has it
    cacheBuffer: 0 // until it has been seen
    reuseItems: false
    Accessible.role: Accessible.List
    section.property: "section"
    section.criteria: ViewSection.FullString
    section.delegate: ListHeading {
        name: section // qmllint disable unqualified
        count: list.selection.list.turns >= 0 ? list.selection.list.countUnder(name) : 0
        width: list.width
        inset: list.inset
    }
    // Nothing of it is seen before the list moves.
    Later {
        document: "ListBar.qml"
        given: ({ list: list, sight: sight })
        soon: true
        onLoaded: list.cacheBuffer = 400
    }
    PointHandler {
        id: mouse
        acceptedDevices: PointerDevice.Mouse | PointerDevice.TouchPad
        acceptedButtons: Qt.LeftButton
        onActiveChanged: menuGiven = false

        property bool menuGiven: false // to a press that lasted: it pulls nothing any more
    }
    onCountChanged: selection.settleSoon()
    Component.onCompleted: selection.settleSoon()

    Connections {
        target: list.selection

        function onChanging() {
            sight.keep();
            list.foldsFrom = list.row?.cardNowHeight ?? 0;
        }
        function onSettling(arrival: int) {
            if (arrival !== TopicSelection.Stays) {
                sight.rest();
            }
            sight.busy = true;
            list.held = true;
            list.ghostCloses = arrival === TopicSelection.Stays;
            list.closing = list.openCard;
        }
        function onSettled(arrival: int) {
            list.openCard?.arrange();
            if (arrival !== TopicSelection.Replaces && list.closing !== list.openCard) {
                list.closing?.arrange();
            }
            list.closing = null;
            list.held = false;
            list.currentIndex = list.selection.currentRow;
            list.forceLayout();
            if (arrival === TopicSelection.Returns && list.row !== null) {
                list.row.unfold();
                list.forceLayout();
            }
            if (arrival === TopicSelection.Stays) {
                sight.restore();
            } else {
                sight.bring(list.paged || !list.selection.enlarged);
            }
            sight.busy = false;
            list.ghostCloses = false;
            list.foldsFrom = 0;
        }
        function onEnlargedChanged() {
            sight.bring(false);
        }
    }

    footer: LastGhost {
        width: list.width
        inset: list.inset
        shownGhost: list.selection.shownGhost
        closes: list.ghostCloses
        foldsFrom: list.foldsFrom
        undoKeys: list.undoKeys
        onUndo: list.act(KeyboardMap.Undo)
    }
    delegate: TopicRow {
        width: list.width
        inset: list.inset
        paged: list.paged
        ghostCloses: list.ghostCloses
        foldsFrom: list.foldsFrom
        selection: list.selection
        tight: list.height < Theme.grown(440)
        tiny: list.height < (380 + Theme.grown(380)) / 2
        held: list.held
        actions: list.shell.actions.buttons(list.selection.list.section, topic)
        undoKeys: list.undoKeys
        place: Listening.active ? list.placeOf(index) : ""
        attended: list.attended
        onOpened: card => list.openCard = card
        onDropped: card => {
            if (list.openCard === card) {
                list.openCard = null;
            }
        }
        onChosen: {
            list.selection.goTo(index);
            list.chosen();
        }
        onEnlarged: {
            list.selection.goTo(index);
            list.selection.enlarged = true;
        }
        onAct: action => list.act(action)
        onMenuAsked: at => {
            const card = topic;
            mouse.menuGiven = mouse.active;
            if (list.selection.show(card.topicId)) {
                list.chosen();
                list.selection.settle(); // what is told of this change comes before the menu
                list.menuAsked(card, at);
            }
        }
        onCarried: if (!mouse.menuGiven) list.shell.links.carry(topicId)
    }

    CardSight {
        id: sight
        list: list
        lead: Theme.headingHeight // its heading stays in sight
    }
}
