import QtQuick
import QtQuick.Window
import Vorle
import Vorle.Models

// The main window: the side bar, the chosen section, and what lies over them. Every key goes
// through the keyboard map, which also draws the shortcut sheet.
Window {
    id: main

    required property Shell shell

    readonly property var sections: shell.sections
    readonly property var keyboard: shell.keyboard
    readonly property var screens: [inbox, program, reserve, library, territory, report]
    readonly property var screen: screens[sections.current]?.item ?? null
    readonly property bool listing: sections.current < Section.Territory
    readonly property string chosenId: (listing ? screen?.currentId : "") ?? ""
    readonly property bool covered: panels.shown

    signal quitAsked
    signal raiseAsked

    title: "vorle"
    minimumWidth: 860
    minimumHeight: 560
    color: Theme.paper

    property alias word: word
    property var ghost: null // { section, topicId, went, title, beforeId, afterId }

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
            tell(qsTr("Écarté : il n’est plus dans tes rubriques."));
            return;
        }
        go(section);
        screen.show(topicId);
    }
    function tell(sentence: string) {
        if (sentence.length > 0) {
            main.ghost = null;
            word.show(sentence);
            voice.say(sentence);
        }
    }
    function askToClose() {
        panels.askToClose();
    }
    function askCorrection(topicId: string) {
        panels.correct(sections.topics, topicId);
    }

    Component.onCompleted: screen.focusContent()
    Connections {
        target: main.shell

        function onSaid(sentence: string) {
            main.tell(sentence);
        }
    }
    SectionButtons {
        id: buttons
        keyboard: main.keyboard
    }
    Actions {
        id: actions
        window: main
        panels: panels
        menu: side
        notch: notch.item
    }
    // What comes back is what one wants to see.
    Connections {
        target: main.shell.decisions

        function onUndone(topicId: string) {
            if (main.listing) {
                main.screen.show(topicId);
            }
        }
    }
    Timer {
        id: ghostAway
        interval: Theme.ghostStay
        onTriggered: main.ghost = null
    }
    // What lies behind a card is worked out only when it is looked at.
    readonly property string readId: listing && screen?.enlarged ? chosenId : ""
    onReadIdChanged: shell.page.topicId = readId

    Loader {
        id: notch
        active: main.shell.run.running || item !== null
        sourceComponent: NotchPanel {
            run: main.shell.run
            mainWindow: main
            transientParent: null
            onOpened: main.raiseAsked()
        }
    }
    Shortcut {
        sequences: [StandardKey.Quit]
        onActivated: main.quitAsked()
    }
    Item {
        id: root
        anchors.fill: parent
        focus: true
        Keys.priority: Keys.BeforeItem
        Keys.onPressed: event => {
            const typing = main.activeFocusItem instanceof TextInput || main.activeFocusItem instanceof TextEdit;
            const action = main.keyboard.action(main.sections.current, event.key, event.modifiers, typing);
            if (action === KeyboardMap.NoAction) {
                return;
            }
            if (main.covered && action !== KeyboardMap.Search && action !== KeyboardMap.AddTopic && action !== KeyboardMap.ShowShortcuts) {
                return; // a panel keeps the keyboard
            }
            if (event.isAutoRepeat && !main.keyboard.repeats(action)) {
                event.accepted = true;
                return;
            }
            const inMenu = side.activeFocus;
            if (inMenu && !main.keyboard.isEverywhere(action)) {
                return; // the menu moves by itself, and nobody looks at the cards
            }
            main.perform(action);
            event.accepted = true;
        }

        SideBar {
            id: side
            width: Theme.sideWidth
            height: parent.height
            model: main.sections
            current: main.sections.current
            run: main.shell.run
            keysRun: main.keyboard.keys(KeyboardMap.RunNow)
            enabled: !main.covered
            active: main.covered
            onPicked: section => {
                if (main.listing) {
                    main.screen.enlarged = false;
                }
                main.sections.current = section;
            }
            onRunAsked: main.shell.run.start()
            onStopAsked: main.shell.run.stop()
            onContentAsked: main.screen.focusContent()
        }
        AccessibilityBarrier {
            id: content
            x: side.width
            width: parent.width - x
            height: parent.height
            enabled: !main.covered
            active: main.covered
            focus: true
            Accessible.role: Accessible.Grouping
            Accessible.name: main.sections.title

            SectionPlace {
                id: inbox
                window: main
                number: Section.Inbox
                sourceComponent: TopicScreen {
                    window: main
                    bannerHeight: banner.height
                    number: Section.Inbox
                    model: main.shell.inbox
                    headings: true
                    actions: buttons.inbox
                    hint: main.keyboard.inboxHint
                }
            }
            SectionPlace {
                id: program
                window: main
                number: Section.Program
                sourceComponent: TopicScreen {
                    window: main
                    bannerHeight: banner.height
                    number: Section.Program
                    model: main.shell.program
                    actions: buttons.program
                    headings: true
                    header: BudgetBar {
                        width: parent.width
                        visible: main.shell.program.count > 0 || done > 0
                        model: main.shell.budget
                    }
                    hint: buttons.programHint
                }
            }
            SectionPlace {
                id: reserve
                window: main
                number: Section.Reserve
                sourceComponent: TopicScreen {
                    window: main
                    bannerHeight: banner.height
                    number: Section.Reserve
                    model: main.shell.reserve
                    headings: true
                    actions: buttons.reserve
                    hint: buttons.reserveHint
                }
            }
            SectionPlace {
                id: library
                window: main
                number: Section.Library
                sourceComponent: TopicScreen {
                    window: main
                    bannerHeight: banner.height
                    number: Section.Library
                    model: main.shell.library
                    headings: true
                    actions: buttons.reserve
                    hint: buttons.reserveHint
                }
            }
            SectionPlace {
                id: territory
                window: main
                number: Section.Territory
                onCurrentChanged: if (current) main.shell.territory.refresh()
                sourceComponent: TerritoryScreen {
                    bannerHeight: banner.height
                    title: main.sections.title
                    model: main.shell.territory
                    searchKeys: main.keyboard.keys(KeyboardMap.Search)
                    onSearchAsked: main.perform(KeyboardMap.Search)
                }
            }
            SectionPlace {
                id: report
                window: main
                number: Section.Report
                onCurrentChanged: if (current) main.shell.report.refresh()
                sourceComponent: ReportScreen {
                    bannerHeight: banner.height
                    title: main.sections.title
                    model: main.shell.report
                    searchKeys: main.keyboard.keys(KeyboardMap.Search)
                    onSearchAsked: main.perform(KeyboardMap.Search)
                }
            }
            Banner {
                id: banner
                width: parent.width
                run: main.shell.run
                notice: main.shell.notice
                onRunAsked: main.shell.run.start()
                onTerritoryAsked: main.go(Section.Territory)
                onNoticeDismissed: main.shell.dismissNotice()
                remedy: main.shell.remedy
                onRemedyAsked: main.shell.takeRemedy()
            }
        }
        Voice {
            id: voice
            shell: main.shell
        }
        Word {
            id: word
            anchors.horizontalCenter: content.horizontalCenter
            anchors.bottom: parent.bottom
            anchors.bottomMargin: main.listing && main.screen?.enlarged ? 104 : 66
            visible: opacity > 0 && !main.covered
        }

        Panels {
            id: panels
            anchors.fill: parent
            window: main
        }
    }
}
