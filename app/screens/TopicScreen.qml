import QtQuick
import Vorle
import Vorle.Models

// A section that lists topics: "À trier", "Programme", "Réserve" and "Bibliothèque".
SectionScreen {
    id: screen

    required property int number // Section
    readonly property TopicSelection selection: shell.actions.of(number)
    readonly property ReadingPage page: reading.item as ReadingPage
    // The chosen topic, once its card stands open.
    readonly property topicCard topic: list.row !== null && list.row.topicId === selection.shownId ? list.row.topic : none
    property topicCard none
    property alias header: head.below

    Keys.onPressed: event => event.accepted = !(event.modifiers & ~Qt.KeypadModifier) && moveFar(event.key)

    function move(step: int) {
        selection.enlarged ? page?.scrollBy(step * 120) : selection.step(step);
    }
    // Keys for long lists; whether it was one of them.
    function moveFar(key: int): bool {
        const steps = { [Qt.Key_Home]: -list.count, [Qt.Key_End]: list.count, [Qt.Key_PageUp]: -5, [Qt.Key_PageDown]: 5 };
        if (key in steps) {
            selection.enlarged ? page?.takes(key) : selection.step(steps[key]);
        }
        return key in steps;
    }
    function focusContent() {
        spot.forceActiveFocus();
    }
    function ready(): bool {
        return list.ready();
    }
    // The keyboard rests on no card: whoever listens is told which one it acts on.
    function pointAtChosen() {
        if (spot.activeFocus) {
            voice.pointAt(selection.enlarged ? page : list.openCard);
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
        // On to what stands in the content; the chain of all items would go round by the menu.
        Keys.onTabPressed: {
            const from = screen.selection.enlarged ? screen.page as Item : head;
            from.nextItemInFocusChain().forceActiveFocus(Qt.TabFocusReason);
        }
    }
    // Behind the page it is seen through its coming and going, and not come upon.
    AccessibilityBarrier {
        anchors.fill: parent
        active: screen.selection.enlarged
        enabled: !screen.selection.enlarged
        Accessible.role: Accessible.Grouping
        Accessible.name: screen.title

        SectionHead {
            id: head
            x: Theme.margin
            width: parent.width - 2 * Theme.margin
            title: screen.title
            subtitle: screen.current ? screen.shell.sections.subtitle : ""
            searchKeys: screen.shell.keyboard.keys(KeyboardMap.Search)
            onSearchAsked: screen.act(KeyboardMap.Search)
        }
        TopicList {
            id: list

            readonly property bool filled: count > 0 || screen.selection.shownGhost.shown

            anchors.left: parent.left
            anchors.right: parent.right
            anchors.top: head.bottom
            anchors.topMargin: 12
            anchors.bottom: hintLine.top
            shell: screen.shell
            selection: screen.selection
            visible: filled
            Accessible.name: screen.title
            onOpenCardChanged: screen.pointAtChosen()
            onAct: action => screen.act(action)
            onChosen: screen.focusContent()
        }
        EmptyState {
            anchors.fill: parent
            anchors.topMargin: head.height
            visible: !list.filled
            title: screen.current ? screen.shell.sections.emptyTitle : ""
            text: screen.current ? screen.shell.sections.emptyText : ""
            buttons: screen.current ? screen.shell.sections.emptyActions : []
            onAct: action => screen.act(action)
        }
        HintLine {
            id: hintLine
            anchors.left: parent.left
            anchors.right: parent.right
            anchors.bottom: parent.bottom
            text: screen.shell.actions.keysHint(screen.number)
            visible: list.filled
        }
    }
    // Made when it is first asked for: most starts never need it.
    Loader {
        id: reading
        anchors.fill: parent
        active: screen.selection.enlarged || item !== null
        sourceComponent: ReadingPage {
            shell: screen.shell
            selection: screen.selection
            topic: screen.selection.enlarged ? screen.topic : screen.none
            section: screen.title
            actions: screen.shell.actions.buttons(screen.number, topic)
            onAct: action => screen.act(action)
        }
    }
}
