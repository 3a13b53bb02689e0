import QtQuick
import Vorle
import Vorle.Models

// The main window: the side bar, the chosen section, and what lies over them. Every key goes
// through the keyboard map, which also draws the shortcut sheet.
Window {
    id: main

    required property Shell shell

    readonly property Sections sections: shell.sections
    readonly property SectionScreen screen: place.screen
    readonly property TopicSelection selection: shell.actions.selection // null where no topics are
    readonly property string chosenId: selection?.currentId ?? ""
    readonly property bool covered: panels.shown || shell.onboarding.shown

    signal quitAsked
    signal raiseAsked
    signal demoAsked
    signal returnAsked

    title: shell.demo ? qsTr("vorle · démonstration") : "vorle"
    minimumWidth: 700
    minimumHeight: 500
    color: Theme.paper

    function perform(action: int) {
        actions.perform(action);
    }
    // What acts while a panel lies over the window too, and what does even over the first set-up.
    function actsOverPanels(action: int): bool {
        return action === KeyboardMap.Search || action === KeyboardMap.AddTopic || action === KeyboardMap.ShowShortcuts || resizes(action);
    }
    function resizes(action: int): bool {
        return action === KeyboardMap.LargerText || action === KeyboardMap.SmallerText || action === KeyboardMap.UsualText;
    }
    // A panel keeps the keyboard; so does the first set-up, over which nothing opens.
    function reaches(action: int): bool {
        return (!covered || actsOverPanels(action)) && (!shell.onboarding.shown || resizes(action));
    }
    // A panel went: the keyboard goes back to the section.
    function resume() {
        if (shell.onboarding.shown) {
            onboarding.forceActiveFocus();
        } else if (!panels.anyShown()) {
            screen?.focusContent();
        }
    }
    function go(section: int) {
        panels.close();
        sections.current = section;
        resume();
    }
    function showTopic(section: int, topicId: string) {
        panels.close();
        shell.actions.showTopic(topicId); // where it is by now
        screen.focusContent();
    }
    function askToClose() {
        panels.open(PanelHost.Closing);
    }

    Component.onCompleted: resume()
    Binding {
        target: Theme
        property: "windowWidth"
        value: main.width
    }
    Connections {
        target: main.shell

        function onSaid(sentence: string) {
            word.show(sentence);
            voice.say(sentence);
        }
    }
    Connections {
        target: main.shell.actions

        function onGhostLeft() {
            ghostAway.restart();
        }
        function onDecidedUnderPage(sentence: string) {
            if (!Theme.roomy) {
                word.show(sentence); // else its line stands beside the page
            }
        }
    }
    Actions {
        id: actions
        shell: main.shell
        screen: main.screen
        panels: panels
        menu: side
    }
    Timer {
        id: ghostAway
        interval: Theme.ghostStay
        onTriggered: main.shell.actions.forgetGhost()
    }
    // What lies behind a card is worked out only when it is looked at.
    readonly property string readId: selection?.enlarged ? chosenId : ""
    onReadIdChanged: {
        if (readId === "") {
            readNoMore.restart();
        } else {
            shell.page.topicId = readId;
        }
    }
    Timer {
        id: readNoMore
        interval: Theme.quick // it is still seen for so long
        onTriggered: main.shell.page.topicId = main.readId
    }

    Later {
        id: notch
        document: "NotchPanel.qml"
        given: ({ run: main.shell.run, mainWindow: main, actions: actions })
        needed: main.shell.run.running
    }
    Connections {
        target: notch.item

        function onOpened() {
            main.raiseAsked();
        }
    }
    Shortcut {
        sequences: [StandardKey.Quit] // qmllint disable unqualified
        onActivated: main.quitAsked()
    }
    Item {
        id: root
        // Not what it stands in, which is as large as the window only once that is shown.
        width: main.width
        height: main.height
        focus: true
        Keys.priority: Keys.BeforeItem
        Keys.onPressed: event => {
            const typing = main.activeFocusItem instanceof TextInput || main.activeFocusItem instanceof TextEdit;
            const action = main.shell.keyboard.action(main.sections.current, event.key, event.modifiers, typing, event.nativeScanCode);
            if (action === KeyboardMap.NoAction) {
                return;
            }
            if (!main.reaches(action)) {
                return;
            }
            if (event.isAutoRepeat && !main.shell.keyboard.repeats(action)) {
                event.accepted = true;
                return;
            }
            const inMenu = side.activeFocus;
            if (inMenu && !main.shell.keyboard.isEverywhere(action)) {
                return; // the menu moves by itself, and nobody looks at the cards
            }
            main.perform(action);
            event.accepted = true;
            // A button that had the keyboard may be gone.
            if (main.activeFocusItem === main.screen) {
                main.screen.focusContent();
            }
        }

        SideBar {
            id: side
            width: main.width < 900 ? 200 : Theme.sideWidth
            height: parent.height
            model: main.sections
            current: main.sections.current
            run: main.shell.run
            keyboard: main.shell.keyboard
            enabled: !main.covered
            active: main.covered
            onPicked: section => main.sections.current = section
            onRunAsked: main.shell.run.start()
            onStopAsked: main.shell.run.stop()
            onContentAsked: main.screen.focusContent()
            onActed: action => main.perform(action)
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

            SectionSlots {
                id: place
                // Anchors would hold only once what stands in it is made, and it made without a size.
                y: banner.y + banner.height
                width: parent.width
                height: parent.height - y
                focus: true
                shell: main.shell
                inboxRoom: main.height - strip.height - banner.height
                onAct: action => main.perform(action)
                onPanelAsked: panel => panels.open(panel)
                onDecisionsAsked: reflex => panels.showDecisions(reflex)
                onTold: sentence => voice.say(sentence)
            }
            Later {
                id: strip
                width: parent.width
                document: "onboarding/DemoStrip.qml"
                needed: main.shell.demoReturns
            }
            Connections {
                target: strip.item

                function onBackAsked() {
                    main.returnAsked();
                }
            }
            Banner {
                id: banner
                y: strip.height
                width: parent.width
                run: main.shell.run
                notice: main.shell.notice
                onRunAsked: main.shell.run.start()
                onTerritoryAsked: main.go(Section.Territory)
                onNoticeDismissed: main.shell.dismissNotice()
                remedy: main.shell.remedy
                onRemedyAsked: main.shell.takeRemedy()
                onGone: main.resume()
            }
        }
        LinkDrop {
            anchors.fill: parent
            links: main.shell.links
            enabled: !main.covered
        }
        Voice {
            id: voice
            shell: main.shell
        }
        Word {
            id: word
            anchors.horizontalCenter: content.horizontalCenter
            anchors.bottom: parent.bottom
            anchors.bottomMargin: main.selection?.enlarged ? 104 : 66
            visible: opacity > 0 && !main.covered
        }

        Later {
            id: onboarding

            readonly property bool wanted: main.shell.onboarding.shown

            anchors.fill: parent
            document: "onboarding/OnboardingScreen.qml"
            given: ({ shell: main.shell })
            needed: wanted
            onWantedChanged: if (!wanted) main.resume()
        }
        Connections {
            target: onboarding.item

            function onDemoAsked() {
                main.demoAsked();
            }
        }
        PanelsLater {
            id: panels
            anchors.fill: parent
            shell: main.shell
            onGone: main.resume()
            onAdded: main.go(Section.Inbox)
            onFound: (section, topicId) => main.showTopic(section, topicId)
            onQuitAsked: main.quitAsked()
            onSectionAsked: section => main.go(section)
            onActed: action => {
                panels.close(); // what it falls on is seen again
                main.resume();
                if (!actions.perform(action)) { // asked for by name, it must not look lost
                    main.shell.said(qsTr("Il était hors de vue : le voici. Encore une fois pour agir."));
                }
            }
        }
    }
}
