import QtQuick
import QtQuick.Templates as T
import Vorle
import Vorle.Models

// The first set-up, over the whole window: one step at a time on a sheet of paper.
FocusScope {
    id: screen

    required property Shell shell
    readonly property OnboardingModel model: shell.onboarding
    readonly property bool shown: model.shown
    readonly property int step: model.step
    readonly property bool last: model.step === OnboardingModel.When
    readonly property bool demoInstead: last && !shell.agentStates.ready // there is nothing to run with
    readonly property Item stepItem: body.item as Item

    signal demoAsked

    visible: shown
    enabled: shown
    Accessible.role: Accessible.Dialog
    Accessible.name: qsTr("Premier réglage")
    Accessible.ignored: !shown
    Keys.onEscapePressed: settle(() => model.leave())
    Keys.onPressed: event => {
        if (event.key === Qt.Key_Left && event.modifiers === Qt.ControlModifier) {
            settle(() => model.back());
            event.accepted = true;
        }
    }
    Keys.onReturnPressed: event => goOn(event)
    Keys.onEnterPressed: event => goOn(event)
    focus: true
    onShownChanged: if (shown) Qt.callLater(focusStep) // qmllint disable
    onStepChanged: Qt.callLater(focusStep) // qmllint disable
    Component.onCompleted: if (shown) Qt.callLater(focusStep) // qmllint disable

    // The first field of the step, or the button that goes on.
    function focusStep() {
        if (shown) {
            view.contentY = 0;
            (stepItem as OnboardingStep).takeFocus();
            voice.say(model.announcement);
        }
    }
    function goOn(event: KeyEvent) {
        event.accepted = !event.isAutoRepeat && !(event.modifiers & ~Qt.KeypadModifier);
        if (event.accepted) {
            advance();
        }
    }
    // Goes away from the step once what is being written there is taken.
    function settle(go: var) {
        if ((stepItem as OnboardingStep)?.settled() ?? true) {
            go();
        }
    }
    function advance() {
        if (demoInstead) {
            demoAsked();
        } else if (!last) {
            settle(() => model.next());
        } else if (more.usable) {
            model.finish();
            shell.run.start();
        }
    }

    Announcer {
        id: voice
    }
    Rectangle {
        anchors.fill: parent
        color: Theme.paper

        TapHandler {} // nothing behind it is clicked
        HoverHandler {}
    }
    Rectangle {
        id: sheet
        anchors.centerIn: parent
        width: Math.min(596, parent.width - 40)
        height: Math.min(640, parent.height - 40)
        radius: Theme.radiusCard
        color: Theme.card
        border.width: 1
        border.color: Theme.line

        Mascot {
            x: 40
            y: 32
            size: 40
        }
        Row {
            anchors.right: parent.right
            anchors.rightMargin: 40
            y: 50
            spacing: 6
            Accessible.ignored: true

            Repeater {
                model: 5

                Rectangle {
                    required property int index
                    width: 28
                    height: 4
                    radius: 2
                    color: index < screen.model.step ? Theme.mid : index === screen.model.step ? Theme.accent : Theme.edge
                }
            }
        }
        Flickable {
            id: view
            x: 34 // room for the rings of what stands at its edges
            y: 92
            width: parent.width - 68
            height: parent.height - y - foot.height
            contentHeight: words.implicitHeight + 16
            boundsBehavior: Flickable.StopAtBounds
            clip: true
            T.ScrollBar.vertical: ScrollLine {}

            Column {
                id: words
                x: 6
                width: view.width - 12
                spacing: 4

                Title {
                    width: parent.width
                    text: screen.model.title
                    size: 30
                }
                Label {
                    width: parent.width
                    text: screen.model.text
                    color: Theme.inkSoft
                    font.pixelSize: Theme.textMenu
                }
                Item {
                    width: 1
                    height: 18
                }
                Loader {
                    id: body
                    width: parent.width
                    active: screen.shown
                    sourceComponent: [you, projects, topics, agent, when][screen.model.step]
                }
            }
        }
        InSight {
            view: view
            focused: screen.shown ? screen.Window.activeFocusItem : null
        }
        Item {
            id: foot
            x: 32
            width: parent.width - 72
            height: 88
            anchors.bottom: parent.bottom

            ActionButton {
                anchors.verticalCenter: parent.verticalCenter
                visible: screen.model.step > 0
                quiet: true
                text: qsTr("‹ Retour")
                onClicked: screen.settle(() => screen.model.back())
            }
            Row {
                anchors.right: parent.right
                anchors.verticalCenter: parent.verticalCenter
                spacing: 8

                ActionButton {
                    quiet: true
                    text: screen.last ? qsTr("Plus tard") : qsTr("Passer")
                    onClicked: {
                        (screen.stepItem as OnboardingStep)?.passOver();
                        if (screen.last) {
                            screen.model.finish();
                        } else {
                            screen.model.pass();
                        }
                    }
                }
                ActionButton {
                    id: more
                    text: screen.demoInstead ? qsTr("Voir la démonstration") : screen.last ? qsTr("Lancer la première fouille") : qsTr("Continuer")
                    keys: "↩"
                    primary: true
                    usable: !screen.last || screen.demoInstead || screen.model.refusal.length === 0
                    onClicked: screen.advance()
                }
            }
        }
    }

    Component {
        id: you
        OnboardingYou {
            shell: screen.shell
        }
    }
    Component {
        id: projects
        OnboardingProjects {
            shell: screen.shell
            onFootAsked: more.forceActiveFocus(Qt.TabFocusReason)
        }
    }
    Component {
        id: topics
        OnboardingTopics {
            shell: screen.shell
        }
    }
    Component {
        id: agent
        OnboardingAgent {
            shell: screen.shell
            onDemoAsked: screen.demoAsked()
        }
    }
    Component {
        id: when
        OnboardingWhen {
            shell: screen.shell
        }
    }
}
