import QtQuick
import QtQuick.Window
import Vorle
import Vorle.Models

// The main window: the side bar, the chosen section, and what lies over them. Every key goes
// through the keyboard map, which also draws the shortcut sheet.
Window {
    id: window

    required property Shell shell
    property bool systemDark: false // set by the application
    property bool reducedMotion: false
    property string displayFamily: ""
    property string textFamily: ""

    readonly property var sections: shell.sections
    readonly property var keyboard: shell.keyboard
    readonly property var screens: [inbox, program, reserve, library, territory, report]
    readonly property var screen: screens[sections.current] ?? inbox
    readonly property bool listing: sections.current < Section.Territory
    readonly property string chosenId: (listing ? screen.currentId : "") ?? ""
    readonly property bool covered: panels.shown

    signal quitAsked
    signal raiseAsked

    title: "vorle"
    minimumWidth: 860
    minimumHeight: 560
    color: Theme.paper

    ThemeBindings {
        shell: window.shell
        systemDark: window.systemDark
        reducedMotion: window.reducedMotion
        displayFamily: window.displayFamily
        textFamily: window.textFamily
    }

    property var ghost: null // { section, topicId, went, title, beforeId }

    function perform(action: int) {
        actions.perform(action);
    }
    function ghostShown() {
        ghostAway.restart();
    }
    // A panel went: the keyboard goes back to the section.
    function resume() {
        if (!panels.anyShown()) {
            screen.focusContent();
        }
    }
    function go(section: int) {
        if (listing) {
            screen.enlarged = false;
        }
        sections.current = section;
        screen.focusContent();
    }
    function showTopic(section: int, topicId: string) {
        panels.close();
        if (section < 0) {
            return;
        }
        go(section);
        screen.show(topicId);
    }
    function tell(sentence: string) {
        if (sentence.length > 0) {
            window.ghost = null;
            word.show(sentence);
        }
    }
    function askCorrection(topicId: string) {
        panels.correct(sections.topics, topicId);
    }

    Connections {
        target: window.shell

        function onSaid(sentence: string) {
            window.tell(sentence);
        }
    }
    SectionButtons {
        id: buttons
        keyboard: window.keyboard
    }
    Actions {
        id: actions
        window: window
        panels: panels
        menu: side
        notch: notch
    }
    // What comes back is what one wants to see.
    Connections {
        target: window.shell.decisions

        function onUndone(topicId: string) {
            if (window.listing) {
                window.screen.show(topicId);
            }
        }
    }
    Timer {
        id: ghostAway
        interval: Theme.ghostStay
        onTriggered: window.ghost = null
    }
    // What lies behind a card is worked out only when it is looked at.
    readonly property string readId: listing && screen.enlarged ? chosenId : ""
    onReadIdChanged: shell.page.topicId = readId

    NotchPanel {
        id: notch
        run: window.shell.run
        transientParent: null
        onOpened: window.raiseAsked()
    }
    Shortcut {
        sequences: [StandardKey.Quit]
        onActivated: window.quitAsked()
    }
    Item {
        id: root
        anchors.fill: parent
        focus: true
        Keys.priority: Keys.BeforeItem
        Keys.onPressed: event => {
            const typing = window.activeFocusItem instanceof TextInput || window.activeFocusItem instanceof TextEdit;
            const action = window.keyboard.action(window.sections.current, event.key, event.modifiers, typing);
            if (action === KeyboardMap.NoAction) {
                return;
            }
            if (window.covered && action !== KeyboardMap.Search && action !== KeyboardMap.AddTopic && action !== KeyboardMap.ShowShortcuts) {
                return; // a panel keeps the keyboard
            }
            if (event.isAutoRepeat && !window.keyboard.repeats(action)) {
                event.accepted = true;
                return;
            }
            const inMenu = side.activeFocus;
            if (inMenu && (action === KeyboardMap.Previous || action === KeyboardMap.Next)) {
                return; // the menu moves by itself
            }
            window.perform(action);
            event.accepted = true;
        }

        SideBar {
            id: side
            width: Theme.sideWidth
            height: parent.height
            model: window.sections
            current: window.sections.current
            run: window.shell.run
            keysRun: window.keyboard.keys(KeyboardMap.RunNow)
            enabled: !window.covered
            onPicked: section => {
                if (window.listing) {
                    window.screen.enlarged = false;
                }
                window.sections.current = section;
            }
            onRunAsked: window.shell.run.start()
            onStopAsked: window.shell.run.stop()
            onContentAsked: window.screen.focusContent()
        }
        FocusScope {
            id: content
            x: side.width
            width: parent.width - x
            height: parent.height
            enabled: !window.covered
            focus: true

            TopicScreen {
                id: inbox
                window: window
                banner: banner.height
                number: Section.Inbox
                model: window.shell.inbox
                headings: true
                actions: buttons.inbox
                hint: window.keyboard.inboxHint
            }
            TopicScreen {
                id: program
                window: window
                banner: banner.height
                number: Section.Program
                model: window.shell.program
                actions: buttons.program
                headings: true
                header: BudgetBar {
                    width: parent.width
                    visible: program.model.count > 0 || done > 0
                    done: window.shell.budget.done
                    planned: window.shell.budget.planned
                    budget: window.shell.budget.budget
                }
                hint: qsTr("%1 premier pas · %2 fait · %3 reporter · %4 retirer").arg(window.keyboard.keys(KeyboardMap.FirstStep)).arg(window.keyboard.keys(KeyboardMap.Done)).arg(window.keyboard.keys(KeyboardMap.Postpone)).arg(window.keyboard.keys(KeyboardMap.Remove))
            }
            TopicScreen {
                id: reserve
                window: window
                banner: banner.height
                number: Section.Reserve
                model: window.shell.reserve
                actions: buttons.reserve
                hint: qsTr("%1 garder · %2 remettre à trier · 1 2 3 bof, utile, pépite").arg(window.keyboard.keys(KeyboardMap.Keep)).arg(window.keyboard.keys(KeyboardMap.BackToTriage))
            }
            TopicScreen {
                id: library
                window: window
                banner: banner.height
                number: Section.Library
                model: window.shell.library
                actions: buttons.reserve
                hint: reserve.hint
            }
            TerritoryScreen {
                id: territory
                anchors.fill: parent
                visible: window.sections.current === Section.Territory
                focus: visible
                title: visible ? window.sections.title : ""
                model: window.shell.territory
                searchKeys: window.keyboard.keys(KeyboardMap.Search)
                onSearchAsked: window.perform(KeyboardMap.Search)
                onVisibleChanged: if (visible) model.refresh()
            }
            ReportScreen {
                id: report
                anchors.fill: parent
                visible: window.sections.current === Section.Report
                focus: visible
                title: visible ? window.sections.title : ""
                model: window.shell.report
                searchKeys: window.keyboard.keys(KeyboardMap.Search)
                onSearchAsked: window.perform(KeyboardMap.Search)
                onVisibleChanged: if (visible) model.refresh()
            }
            Banner {
                id: banner
                width: parent.width
                run: window.shell.run
                notice: window.shell.notice
                onRunAsked: window.shell.run.start()
                onNoticeDismissed: window.shell.dismissNotice()
            }
        }
        Word {
            id: word
            anchors.horizontalCenter: content.horizontalCenter
            anchors.bottom: parent.bottom
            anchors.bottomMargin: 66
        }

        Panels {
            id: panels
            anchors.fill: parent
            window: window
        }
    }
}
