import QtQuick
import QtQuick.Templates as T
import Vorle
import Vorle.Models

// A section that lists topics: "À trier", "Programme", "Réserve" and "Bibliothèque".
FocusScope {
    id: root

    required property string title
    required property string subtitle
    required property var model
    required property var actions
    required property string hint
    property string openHint: "" // the same under the enlarged card
    property bool headings: false // tier headings between the cards
    property string emptyTitle: ""
    property string emptyText: ""
    property var emptyActions: [] // { label, action }
    property var ghost: null // { topicId, went, title, beforeId, afterId }
    property string undoKeys: ""
    property string searchKeys: ""
    property string backKeys: ""
    property string forthKeys: ""
    property alias header: head.below
    // The chosen topic. The view follows it, a frame later: keys may come faster than frames.
    property string currentId: ""
    property int currentRow: -1
    // The same for the cards, once each has heard of the change: one that opened earlier would
    // read the row that stands where its own stood.
    property string shownId: ""
    readonly property var shownItem: list.currentItem
    readonly property var current: shownItem && shownItem.topicId === shownId ? shownItem.topic : null
    // The line that tells where the last topic went; it comes together with the next card.
    property var shownGhost: null
    // The rows keep their heights: what changes in several of them is laid out in one go.
    property bool held: false
    // The chosen topic that went away. The next card stands open in its place at once, and until
    // then the space is not given to others: they would be made for nothing.
    property string goneId: ""
    property bool due: false // the cards have not heard of the last change yet
    property bool gone: false // to another topic, by the person's own hand
    property TopicCard openCard: null
    readonly property real cardWidth: list.width - 2 * Theme.margin
    property bool enlarged: false // the chosen card is shown as a page
    required property var details

    signal act(int action)
    signal undoAsked
    signal searchAsked
    signal emptyAct(int action)
    signal linkOpened(string url)
    signal noteEdited(string topicId, string text)
    signal correctionAsked(string topicId)

    Accessible.role: Accessible.Pane
    Accessible.name: title
    Keys.onPressed: event => event.accepted = !(event.modifiers & ~Qt.KeypadModifier) && moveFar(event.key)

    function move(step: int) {
        enlarged ? reading.page?.scrollBy(step * 120) : nextTopic(step);
    }
    function nextTopic(step: int) {
        goTo(Math.max(0, Math.min(model.count - 1, currentRow + step)));
    }
    // Keys for long lists; whether it was one of them.
    function moveFar(key: int): bool {
        const steps = { [Qt.Key_Home]: -model.count, [Qt.Key_End]: model.count, [Qt.Key_PageUp]: -5, [Qt.Key_PageDown]: 5 };
        if (key in steps) {
            enlarged ? reading.page.takes(key) : nextTopic(steps[key]);
        }
        return key in steps;
    }
    function show(topicId: string): bool {
        const row = model.rowOf(topicId);
        if (row >= 0) {
            goTo(row);
        }
        return row >= 0;
    }
    // Because the person asks for it: the view goes there too.
    function goTo(row: int) {
        gone = true;
        choose(row);
        if (list.activeFocus) {
            focusContent(); // not to the button of a card that closes
        }
    }
    function choose(row: int) {
        currentRow = row;
        currentId = model.topicIdAt(row);
        followSoon();
    }
    // Whether the chosen topic may be decided: only what is seen. Else it is brought into view.
    function ready(): bool {
        follow(); // keys may come faster than frames
        return currentId !== "" && shownId === currentId && (enlarged || sight.ready());
    }
    // What may not be decided can only be sent away, or tried again once its reading failed.
    function actionsOf(refusal: string, problem: string): var {
        const again = problem.length > 0 ? [{ text: qsTr("Réessayer"), keys: "", action: KeyboardMap.ReadAgain, primary: true }] : [];
        return refusal.length > 0 ? again.concat(actions.filter(each => each.action === KeyboardMap.Dismiss)) : actions;
    }
    // After a change of the list: the chosen topic stays chosen; where it is gone, the one that
    // took its place is.
    function settle() {
        const row = model.rowOf(currentId);
        if (row < 0) {
            goneId = currentId;
        }
        choose(row >= 0 ? row : Math.min(Math.max(0, currentRow), model.count - 1));
    }
    function followSoon() {
        if (!due) {
            due = true;
            sight.keep();
        }
        Qt.callLater(follow); // qmllint disable
    }
    function follow() {
        if (!due) {
            return;
        }
        due = false;
        sight.busy = true;
        held = true;
        const closing = openCard;
        shownId = currentId;
        shownGhost = ghost;
        openCard?.arrange();
        if (goneId === "" && closing !== openCard) {
            closing?.arrange();
        }
        held = false;
        list.currentIndex = currentRow;
        list.forceLayout();
        if (goneId !== "" || gone) {
            sight.bring(goneId === "" && !enlarged);
        } else {
            sight.restore();
        }
        goneId = "";
        gone = false;
        sight.busy = false;
    }
    function forget(card: TopicCard) {
        if (openCard === card) {
            openCard = null;
        }
    }
    function focusContent() {
        spot.forceActiveFocus();
    }
    onEnlargedChanged: {
        focusContent();
        sight.bring(false);
        Qt.callLater(pointAtChosen); // qmllint disable
    }
    onOpenCardChanged: pointAtChosen()

    // The keyboard rests on no card: whoever listens is told which one it acts on.
    function pointAtChosen() {
        if (spot.activeFocus) {
            voice.pointAt(enlarged ? reading.item as Item : openCard);
        }
    }
    Announcer {
        id: voice
    }
    onGhostChanged: followSoon()
    Component.onCompleted: settle()
    Connections {
        target: root.model

        function onRowsInserted() { root.settle(); }
        function onRowsRemoved() { root.settle(); }
        function onRowsMoved() { root.settle(); }
        function onModelReset() { root.settle(); }
    }

    // Where the keyboard rests. The list would hand it on to the button it was on last, and a key
    // meant for the card would press that.
    Item {
        id: spot
        focus: true
        onActiveFocusChanged: Qt.callLater(root.pointAtChosen) // qmllint disable
        // On to what stands in the content; the chain of all items would go round by the menu.
        Keys.onTabPressed: {
            const from = root.enlarged ? reading.item as Item : head;
            from.nextItemInFocusChain().forceActiveFocus(Qt.TabFocusReason);
        }
    }
    // Behind the page it is seen through its coming and going, and not come upon.
    AccessibilityBarrier {
        anchors.fill: parent
        active: root.enlarged
        enabled: !root.enlarged
        Accessible.role: Accessible.Grouping
        Accessible.name: root.title

        SectionHead {
            id: head
            x: Theme.margin
            width: parent.width - 2 * Theme.margin
            title: root.title
            subtitle: root.subtitle
            searchKeys: root.searchKeys
            onSearchAsked: root.searchAsked()
        }
        ListView {
            id: list
            anchors.left: parent.left
            anchors.right: parent.right
            anchors.top: head.bottom
            anchors.bottom: hintLine.top
            anchors.topMargin: 12
            leftMargin: Theme.margin
            rightMargin: Theme.margin
            bottomMargin: 24
            clip: true
            model: root.model
            spacing: 0
            boundsBehavior: Flickable.StopAtBounds
            keyNavigationEnabled: false
            highlightFollowsCurrentItem: false // the view moves as `sight` has it
            cacheBuffer: 400
            reuseItems: false
            visible: count > 0 || root.shownGhost !== null
            Accessible.role: Accessible.List
            Accessible.name: root.title
            section.property: root.headings ? "section" : ""
            section.criteria: ViewSection.FullString
            section.delegate: ListHeading {
                name: section
                width: root.cardWidth
            }
            T.ScrollBar.vertical: ScrollLine {}
            onCountChanged: root.followSoon()

            footer: LastGhost {
                width: root.cardWidth
                ghost: root.shownGhost
                undoKeys: root.undoKeys
                onUndo: root.undoAsked()
            }
            delegate: TopicRow {
                width: root.cardWidth
                shownId: root.shownId
                ghost: root.shownGhost
                still: root.goneId !== ""
                tight: list.height < 440
                held: root.held || topicId === root.goneId
                actions: root.actionsOf(model.refusal, model.captureProblem)
                undoKeys: root.undoKeys
                onOpened: card => root.openCard = card
                onDropped: card => root.forget(card)
                onChosen: { root.goTo(index); root.focusContent(); }
                onEnlarged: { root.goTo(index); root.enlarged = true; }
                onAct: action => root.act(action)
                onUndoAsked: root.undoAsked()
            }
        }
        EmptyState {
            anchors.fill: parent
            anchors.topMargin: head.height
            visible: list.count === 0 && root.shownGhost === null
            title: root.emptyTitle
            text: root.emptyText
            buttons: root.emptyActions
            onAct: action => root.emptyAct(action)
        }
        HintLine {
            id: hintLine
            anchors.left: parent.left
            anchors.right: parent.right
            anchors.bottom: parent.bottom
            text: root.hint
            visible: list.count > 0 || root.shownGhost !== null
        }
    }
    CardSight {
        id: sight
        list: list
        lead: root.headings ? 44 : 4 // its heading stays in sight
    }
    ReadingPlace {
        id: reading
        anchors.fill: parent
        section: root
        position: root.currentRow
    }
    onCurrentIdChanged: if (currentId === "") enlarged = false
}
