import QtQuick
import Vorle
import Vorle.Models

// A section that lists topics: "À trier", "Programme", "Réserve" and "Bibliothèque".
SectionScreen {
    id: screen

    required property int number // Section
    readonly property TopicSelection selection: shell.actions.of(number)
    readonly property ReadingPlace page: reading.item as ReadingPlace
    // The chosen topic, once its card stands open.
    readonly property topicCard topic: list.row !== null && list.row.topicId === selection.shownId ? list.row.topic : none
    property topicCard none
    // What the page shows; it keeps it until it is gone.
    readonly property bool reads: selection.enlarged || (page?.visible ?? false)
    property topicCard read
    property bool endReached: false // of triage; see TopicsEnd

    signal menuOpened(topicCard topic, point at, bool byKey)

    Component.onCompleted: list.sized = true
    onTopicChanged: turn()
    onReadsChanged: turn()

    function turn() {
        if (selection.enlarged) {
            read = topic;
        } else if (!reads) {
            read = none;
        }
    }
    property alias header: head.below
    // The page stands beside the list, which keeps the arrows; else it lies over it.
    readonly property bool beside: Theme.roomy
    readonly property real pageWidth: Theme.readingWidth + 2 * Theme.margin
    readonly property bool covered: selection.enlarged && !beside

    Keys.onPressed: event => event.accepted = (page?.copies(event) ?? false) || opensMenu(event) || !(event.modifiers & ~Qt.KeypadModifier) && moveFar(event.key)

    function move(step: int) {
        selection.step(step);
    }
    // Keys for long lists; whether it was one of them.
    function moveFar(key: int): bool {
        const steps = { [Qt.Key_Home]: -list.count, [Qt.Key_End]: list.count, [Qt.Key_PageUp]: -5, [Qt.Key_PageDown]: 5 };
        if (key in steps) {
            selection.enlarged ? page?.takes(key) : selection.step(steps[key]);
        }
        return key in steps;
    }
    // The key for menus: that of the chosen card, beside its score. Whether it was that one.
    function opensMenu(event: KeyEvent): bool {
        const asked = event.key === Qt.Key_Menu && !event.modifiers || event.key === Qt.Key_F10 && event.modifiers === Qt.ShiftModifier;
        if (asked && !event.isAutoRepeat && !covered && list.ready() && list.row !== null) {
            openMenu(list.row.topic, list.row.mapToItem(null, list.inset + 24, list.row.cardNow + 24), true);
        }
        return asked;
    }
    function openMenu(topic: topicCard, at: point, byKey: bool) {
        menu.need();
        menuOpened(topic, at, byKey);
    }
    function focusContent() {
        spot.forceActiveFocus();
    }
    function ready(): bool {
        return list.ready();
    }
    function opensSource(event: KeyEvent) {
        event.accepted = !(event.modifiers & ~Qt.KeypadModifier);
        if (event.accepted && !event.isAutoRepeat) {
            act(KeyboardMap.OpenSource);
        }
    }
    // The keyboard rests on no card: whoever listens is told which one it acts on.
    function pointAtChosen() {
        if (spot.activeFocus) {
            voice.pointAt(selection.enlarged ? page : list.count > 0 ? list.openCard : empty.item?.visible ? empty.item as Item : null);
        }
    }
    Announcer {
        id: voice
    }
    Connections {
        target: screen.selection

        function onEnlargedChanged() {
            screen.focusContent();
            Qt.callLater(screen.pointAtChosen); // qmllint disable
        }
        function onShownChanged() {
            if (screen.beside && screen.selection.enlarged) {
                Qt.callLater(screen.pointAtChosen); // qmllint disable
            }
        }
        function onWentTo() {
            if (list.activeFocus) {
                screen.focusContent(); // not to the button of a card that closes
            }
        }
    }

    // Where the keyboard rests. The list would hand it on to the button it was on last, and a key
    // meant for the card would press that.
    Item {
        id: spot
        focus: true
        onActiveFocusChanged: Qt.callLater(screen.pointAtChosen) // qmllint disable
        // Only a press that finds the keyboard here: one that put a panel away, or that a button
        // took before it went, was not meant for the card.
        Keys.onReturnPressed: event => screen.opensSource(event)
        Keys.onEnterPressed: event => screen.opensSource(event)
        // On to what stands in the content; the chain of all items would go round by the menu.
        Keys.onTabPressed: {
            const from = screen.covered ? screen.page as Item : head;
            from.nextItemInFocusChain().forceActiveFocus(Qt.TabFocusReason);
        }
    }
    // Behind the page it is seen through its coming and going, and not come upon.
    AccessibilityBarrier {
        width: screen.selection.enlarged && screen.beside ? screen.width - reading.width : screen.width
        height: parent.height
        active: screen.covered
        enabled: !screen.covered
        Accessible.role: Accessible.Pane // without a name: its section has that already

        SectionHead {
            id: head
            x: list.inset
            width: parent.width - 2 * x
            title: screen.title
            subtitle: screen.current ? screen.shell.sections.subtitle : ""
            searchKeys: screen.shell.keyboard.keys(KeyboardMap.Search)
            onSearchAsked: screen.act(KeyboardMap.Search)
        }
        TopicList {
            id: list

            anchors.left: parent.left
            anchors.right: parent.right
            anchors.top: head.bottom
            anchors.topMargin: 6
            anchors.bottom: hintLine.top
            shell: screen.shell
            selection: screen.selection
            paged: screen.beside && screen.selection.enlarged
            visible: filled
            attended: spot.activeFocus
            Accessible.name: screen.current ? screen.shell.sections.subtitle : ""
            onOpenCardChanged: Qt.callLater(screen.pointAtChosen) // qmllint disable
            onAct: action => screen.act(action)
            onChosen: screen.focusContent()
            onMenuAsked: (topic, at) => screen.openMenu(topic, at, false)
        }
        Later {
            id: empty
            anchors.left: parent.left
            anchors.right: parent.right
            anchors.top: head.bottom
            anchors.bottom: parent.bottom
            document: "TopicsEnd.qml"
            given: ({ screen: screen, list: list })
            needed: list.sized && list.count === 0
            soon: true
        }
        HintLine {
            id: hintLine
            anchors.left: parent.left
            anchors.right: parent.right
            anchors.bottom: parent.bottom
            text: screen.shell.actions.keysHint(screen.number)
            visible: list.filled && !screen.endReached
        }
    }
    // Over the whole window, read when it is first asked for.
    Later {
        id: menu
        parent: screen.Window.contentItem
        anchors.fill: parent
        z: 20
        document: "TopicMenu.qml"
        given: ({ screen: screen })
    }
    Later {
        id: reading
        // Beside it, the list has its own column at most.
        width: screen.beside ? Math.max(screen.pageWidth, screen.width - Theme.columnWidth - 2 * Theme.margin) : screen.width
        height: parent.height
        x: screen.width - width
        // It comes from where it belongs: from the side beside the list, else from its card.
        transform: Translate {
            x: screen.beside ? (1 - (screen.page?.opacity ?? 1)) * 24 : 0
            y: screen.beside ? 0 : (1 - (screen.page?.opacity ?? 1)) * 14
        }
        document: "TopicReading.qml"
        given: ({ screen: screen })
        needed: screen.selection.enlarged

        // Its edge, where the list goes on beside it.
        Rectangle {
            z: 1
            visible: screen.beside && screen.selection.enlarged
            width: 1
            height: parent.height
            color: Theme.line
        }
    }
}
