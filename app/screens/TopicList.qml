import QtQuick
import QtQuick.Templates as T
import Vorle
import Vorle.Models

// The cards of a section. They follow what is chosen once a change is through, all in one layout:
// the next card opens in the place of the one that went, together with the line that stays.
ListView {
    id: list

    required property Shell shell
    required property TopicSelection selection
    readonly property TopicRow row: currentItem as TopicRow
    readonly property real cardWidth: width - 2 * Theme.margin
    readonly property string undoKeys: shell.keyboard.keys(KeyboardMap.Undo)
    property TopicCard openCard: null
    property TopicCard closing: null // the one that stood open before
    // The rows keep their heights: what changes in several of them is laid out in one go.
    property bool held: false

    signal act(int action)
    signal chosen // by the mouse

    // Whether the chosen topic's card is in view, or its page open; else it is brought there.
    function ready(): bool {
        selection.settle(); // keys may come faster than frames
        return selection.shownId !== "" && (selection.enlarged || sight.ready());
    }

    clip: true
    model: selection.list
    spacing: 0
    bottomMargin: 24
    leftMargin: Theme.margin
    rightMargin: Theme.margin
    boundsBehavior: Flickable.StopAtBounds
    keyNavigationEnabled: false
    highlightFollowsCurrentItem: false // the view moves as `sight` has it
    cacheBuffer: 400
    reuseItems: false
    Accessible.role: Accessible.List
    section.property: "section"
    section.criteria: ViewSection.FullString
    section.delegate: ListHeading {
        name: section // qmllint disable unqualified
        width: list.cardWidth
    }
    T.ScrollBar.vertical: ScrollLine {}
    onCountChanged: selection.settleSoon()
    Component.onCompleted: selection.settleSoon()

    Connections {
        target: list.selection

        function onChanging() {
            sight.keep();
        }
        function onSettling() {
            sight.busy = true;
            list.held = true;
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
            if (arrival === TopicSelection.Stays) {
                sight.restore();
            } else {
                sight.bring(arrival === TopicSelection.Asked && !list.selection.enlarged);
            }
            sight.busy = false;
        }
        function onEnlargedChanged() {
            sight.bring(false);
        }
    }

    footer: LastGhost {
        width: list.cardWidth
        shownGhost: list.selection.shownGhost
        undoKeys: list.undoKeys
        onUndo: list.act(KeyboardMap.Undo)
    }
    delegate: TopicRow {
        width: list.cardWidth
        selection: list.selection
        tight: list.height < 440
        tiny: list.height < 380
        held: list.held
        actions: list.shell.actions.buttons(list.selection.list.section, topic)
        undoKeys: list.undoKeys
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
    }

    CardSight {
        id: sight
        list: list
        lead: 44 // its heading stays in sight
    }
}
