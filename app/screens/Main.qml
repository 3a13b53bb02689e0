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
    readonly property var panels: [search, shortcuts, addLink, correction, settings]
    readonly property bool covered: search.shown || shortcuts.shown || addLink.shown || correction.shown || settings.shown

    signal quitAsked
    signal raiseAsked

    title: "vorle"
    minimumWidth: 860
    minimumHeight: 560
    color: Theme.paper

    Binding {
        target: Theme
        property: "dark"
        value: window.shell.appearance === "Sombre" || (window.shell.appearance !== "Clair" && window.systemDark)
    }
    Binding {
        target: Theme
        property: "accentName"
        value: window.shell.accent
    }
    Binding {
        target: Theme
        property: "reducedMotion"
        value: window.reducedMotion
    }
    Binding {
        target: Theme
        property: "displayFamily"
        value: window.displayFamily
        when: window.displayFamily.length > 0
    }
    Binding {
        target: Theme
        property: "textFamily"
        value: window.textFamily
        when: window.textFamily.length > 0
    }

    // Which action stands on which button, by section.
    function button(text: string, action: int, primary: bool): var {
        return { text: text, keys: keyboard.keys(action), action: action, primary: primary };
    }
    readonly property var inboxActions: [
        button(qsTr("Garder"), KeyboardMap.Keep, true),
        button(qsTr("Plus tard"), KeyboardMap.Later, false),
        button(qsTr("Pas pour moi"), KeyboardMap.Dismiss, false)]
    readonly property var programActions: [
        button(qsTr("Premier pas"), KeyboardMap.FirstStep, true),
        button(qsTr("Fait"), KeyboardMap.Done, false),
        button(qsTr("Reporter"), KeyboardMap.Postpone, false),
        button(qsTr("Retirer"), KeyboardMap.Remove, false)]
    readonly property var reserveActions: [
        button(qsTr("Garder"), KeyboardMap.Keep, true),
        button(qsTr("Remettre à trier"), KeyboardMap.BackToTriage, false),
        button(qsTr("Bof"), KeyboardMap.WorthMeh, false),
        button(qsTr("Utile"), KeyboardMap.WorthUseful, false),
        button(qsTr("Pépite"), KeyboardMap.WorthGem, false)]

    property var ghost: null // { section, topicId, went, title, beforeId }

    function decide(action: int, act: var) {
        const list = sections.topics;
        const id = chosenId;
        if (list === null || id === "") {
            return;
        }
        const row = list.rowOf(id);
        if (list.value(row, TopicListModel.PendingCapture) && action !== KeyboardMap.Dismiss) {
            tell(qsTr("Je lis encore cette page : elle se décide une fois jugée."));
            return;
        }
        const title = list.value(row, TopicListModel.Title);
        const before = list.topicIdAt(row + 1);
        const section = sections.current;
        const connection = (topicId, went) => window.ghost = { section: section, topicId: topicId, went: went, title: title, beforeId: before };
        window.shell.decisions.decided.connect(connection);
        act(id);
        window.shell.decisions.decided.disconnect(connection);
        if (list.rowOf(id) >= 0) {
            window.ghost = null; // it stays in this section
        } else {
            ghostAway.restart();
        }
    }
    function perform(action: int) {
        const decisions = shell.decisions;
        switch (action) {
        case KeyboardMap.Search:
            open(search);
            break;
        case KeyboardMap.AddTopic:
            addLink.suggestion = shell.linkOnPasteboard();
            open(addLink);
            break;
        case KeyboardMap.GoInbox:
        case KeyboardMap.GoProgram:
        case KeyboardMap.GoReserve:
        case KeyboardMap.GoLibrary:
        case KeyboardMap.GoTerritory:
        case KeyboardMap.GoReport:
            go(keyboard.target(action));
            break;
        case KeyboardMap.GoMenu:
            side.focusCurrent();
            break;
        case KeyboardMap.GoContent:
            screen.focusContent();
            break;
        case KeyboardMap.RunNow:
            shell.run.start();
            break;
        case KeyboardMap.Undo:
            tell(decisions.undo());
            break;
        case KeyboardMap.Redo:
            tell(decisions.redo());
            break;
        case KeyboardMap.OpenSettings:
            open(settings);
            break;
        case KeyboardMap.ShowShortcuts:
            shortcuts.shown ? shortcuts.shown = false : open(shortcuts);
            break;
        case KeyboardMap.Previous:
            screen.move(-1);
            break;
        case KeyboardMap.Next:
            screen.move(1);
            break;
        case KeyboardMap.ToggleCard:
            if (listing && chosenId !== "") {
                screen.enlarged = !screen.enlarged;
            }
            break;
        case KeyboardMap.CloseCard:
            if (listing) {
                screen.enlarged = false;
            }
            notch.dismissed = true;
            break;
        case KeyboardMap.FirstStep:
            if (chosenId !== "") {
                shell.firstStep(chosenId);
            }
            break;
        case KeyboardMap.Keep:
            decide(action, id => decisions.keep(id));
            break;
        case KeyboardMap.Later:
            decide(action, id => decisions.later(id));
            break;
        case KeyboardMap.Dismiss:
            decide(action, id => decisions.dismiss(id));
            break;
        case KeyboardMap.Done:
            decide(action, id => decisions.done(id, ""));
            break;
        case KeyboardMap.Postpone:
            decide(action, id => decisions.postpone(id));
            break;
        case KeyboardMap.Remove:
            decide(action, id => decisions.removeFromProgram(id));
            break;
        case KeyboardMap.BackToTriage:
            decide(action, id => decisions.backToTriage(id));
            break;
        case KeyboardMap.WorthMeh:
            decide(action, id => decisions.verdict(id, "meh"));
            break;
        case KeyboardMap.WorthUseful:
            decide(action, id => decisions.verdict(id, "useful"));
            break;
        case KeyboardMap.WorthGem:
            decide(action, id => decisions.verdict(id, "gem"));
            break;
        }
    }
    // One panel at a time: two would fight for the keyboard.
    function open(panel: var) {
        for (const other of panels) {
            other.shown = other === panel;
        }
    }
    function resume() {
        // Asked of the panels themselves: a binding on them may not have been told yet.
        if (!panels.some(panel => panel.shown)) {
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
        search.shown = false;
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
        open(correction);
        const list = sections.topics;
        const row = list.rowOf(topicId);
        const former = list.value(row, TopicListModel.FormerScore);
        const now = list.value(row, TopicListModel.Score);
        correction.open(topicId, list.value(row, TopicListModel.Title), former >= 0 ? former : now, now, shell.correctionTags(topicId), shell.correctionText(topicId), former >= 0);
    }

    Connections {
        target: window.shell

        function onSaid(sentence: string) {
            window.tell(sentence);
        }
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

            component TopicScreen: TopicSection {
                required property int number

                anchors.fill: parent
                anchors.topMargin: banner.visible ? banner.height : 0
                visible: window.sections.current === number
                focus: visible
                title: visible ? window.sections.title : ""
                subtitle: visible ? window.sections.subtitle : ""
                emptyTitle: visible ? window.sections.emptyTitle : ""
                emptyText: visible ? window.sections.emptyText : ""
                emptyActions: visible ? window.sections.emptyActions : []
                details: window.shell.page
                ghost: window.ghost !== null && window.ghost.section === number ? window.ghost : null
                undoKeys: window.keyboard.keys(KeyboardMap.Undo)
                searchKeys: window.keyboard.keys(KeyboardMap.Search)
                onAct: action => window.perform(action)
                onEmptyAct: action => window.perform(action)
                onUndoAsked: window.perform(KeyboardMap.Undo)
                onSearchAsked: window.perform(KeyboardMap.Search)
                onLinkOpened: url => window.shell.openLink(url)
                onNoteEdited: (topicId, text) => window.shell.decisions.setNote(topicId, text)
                onCorrectionAsked: topicId => window.askCorrection(topicId)
            }

            TopicScreen {
                id: inbox
                number: Section.Inbox
                model: window.shell.inbox
                headings: true
                actions: window.inboxActions
                hint: window.keyboard.inboxHint
            }
            TopicScreen {
                id: program
                number: Section.Program
                model: window.shell.program
                actions: window.programActions
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
                number: Section.Reserve
                model: window.shell.reserve
                actions: window.reserveActions
                hint: qsTr("%1 garder · %2 remettre à trier · 1 2 3 bof, utile, pépite").arg(window.keyboard.keys(KeyboardMap.Keep)).arg(window.keyboard.keys(KeyboardMap.BackToTriage))
            }
            TopicScreen {
                id: library
                number: Section.Library
                model: window.shell.library
                actions: window.reserveActions
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

        SearchOverlay {
            id: search
            search: window.shell.search
            onClosed: shown = false
            onShownChanged: if (!shown) window.resume()
            onPicked: (section, topicId) => window.showTopic(section, topicId)
        }
        ShortcutSheet {
            id: shortcuts
            groups: window.keyboard.groups
            onClosed: shown = false
            onShownChanged: if (!shown) window.resume()
        }
        SettingsPanel {
            id: settings
            shell: window.shell
            onClosed: shown = false
            onShownChanged: if (!shown) window.resume()
        }
        AddLink {
            id: addLink
            onClosed: shown = false
            onShownChanged: {
                if (!shown) {
                    window.resume();
                }
            }
            onAdded: (url, note) => {
                problem = window.shell.addLink(url, note);
                if (problem.length === 0) {
                    shown = false;
                    window.go(Section.Inbox);
                }
            }
        }
        CorrectionPanel {
            id: correction
            offered: window.shell.correctionWords
            onClosed: shown = false
            onShownChanged: if (!shown) window.resume()
            onGiven: (topicId, score, tags, text) => {
                window.shell.correct(topicId, score, tags, text);
                shown = false;
            }
            onRemoved: topicId => {
                window.shell.uncorrect(topicId);
                shown = false;
            }
        }
    }
}
