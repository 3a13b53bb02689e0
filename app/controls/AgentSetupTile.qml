import QtQuick
import Vorle
import Vorle.Models

// One of the agents: whether it is the one that is used, whether it can work, and what there is to
// do so that it can.
Rectangle {
    id: tile

    required property agentState agent
    readonly property bool telling: agent.working || agent.ready || agent.problem.length > 0
    readonly property string moment: `${telling} ${agent.installing} ${agent.ready} ${agent.problem} ${agent.installing ? "" : agent.text}`
    property bool stood: false
    // Whoever presses the button can have read what it says.
    readonly property bool settled: !changing.running

    signal picked
    signal acted(string action)
    signal pageWanted

    // What has to be heard by who does not see it; not how far an installation is.
    onMomentChanged: if (stood && telling) voice.say(agent.name + "\u00A0: " + (agent.problem.length > 0 ? agent.problem : agent.ready ? agent.state : agent.text))
    Component.onCompleted: stood = true

    implicitHeight: words.y + words.implicitHeight + 14
    radius: 14
    color: hover.hovered ? Theme.raised : "transparent"
    border.width: agent.chosen ? 2 : 1
    border.color: agent.chosen ? Theme.ink : hover.hovered ? Theme.inkFaint : Theme.line
    activeFocusOnTab: true
    Accessible.role: Accessible.RadioButton
    Accessible.name: agent.name + ", " + agent.state
    Accessible.description: `${agent.problem} ${agent.text} ${agent.note}`.trim()
    Accessible.checkable: true
    Accessible.checked: agent.chosen
    Accessible.focusable: true
    Accessible.focused: activeFocus
    Accessible.onPressAction: picked()
    Accessible.onToggleAction: picked()
    Keys.onSpacePressed: event => event.isAutoRepeat || picked()

    TapHandler {
        onTapped: tile.picked()
    }
    HoverHandler {
        id: hover
    }
    FocusRing {
        radius: parent.radius + 3
        shown: tile.activeFocus
    }
    Rectangle {
        x: 18
        anchors.verticalCenter: head.verticalCenter
        width: 16
        height: 16
        radius: 8
        color: "transparent"
        border.width: tile.agent.chosen ? 5 : 1.5
        border.color: tile.agent.chosen ? Theme.ink : Theme.inkFaint
    }
    Item {
        id: head
        x: 48
        y: 12
        width: parent.width - x - 12
        height: Math.max(name.implicitHeight, action.visible ? action.implicitHeight : 0)

        Title {
            id: name
            anchors.verticalCenter: parent.verticalCenter
            text: tile.agent.name
            size: Theme.textMenu
            Accessible.ignored: true
        }
        Label {
            anchors.left: name.right
            anchors.leftMargin: 14
            anchors.baseline: name.baseline
            visible: tile.agent.ready
            text: "✓ " + tile.agent.state
            color: Theme.inkSoft
            font.pixelSize: Theme.textNote
            font.weight: Font.DemiBold
            Accessible.ignored: true
        }
        ActionButton {
            id: action
            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            visible: text.length > 0
            text: tile.agent.action
            primary: tile.agent.chosen && !tile.agent.working
            Accessible.name: qsTr("%1, %2").arg(text).arg(tile.agent.name)
            onClicked: if (tile.settled) tile.acted(text)
            onTextChanged: {
                if (tile.stood) {
                    changing.restart();
                }
                if (text.length === 0 && focus) {
                    tile.forceActiveFocus(Qt.TabFocusReason); // it goes
                }
            }
        }
    }
    Column {
        id: words
        x: 48
        y: head.y + head.height + 4
        width: parent.width - x - 18
        spacing: 4

        Label {
            width: parent.width
            visible: tile.agent.problem.length > 0
            text: tile.agent.problem
            color: Theme.tintInk
            font.pixelSize: Theme.textNote
            Accessible.ignored: true
        }
        Label {
            width: parent.width
            text: tile.agent.text
            color: tile.agent.working ? Theme.ink : Theme.inkSoft
            font.pixelSize: Theme.textNote
            Accessible.ignored: true
        }
        Item { // holds the line in its place
            width: parent.width
            height: 14
            visible: tile.agent.installing

            Rectangle {
                id: track
                visible: done.known || !Theme.reducedMotion
                anchors.verticalCenter: parent.verticalCenter
                width: parent.width
                height: 4
                radius: 2
                color: Theme.well
                clip: true
                Accessible.role: Accessible.ProgressBar
                Accessible.name: qsTr("Installation de %1").arg(tile.agent.name)

                Rectangle {
                    id: done
                    readonly property bool known: tile.agent.percent >= 0
                    x: known ? 0 : (track.width - width) * place
                    width: known ? track.width * tile.agent.percent / 100 : track.width / 4
                    height: parent.height
                    radius: 2
                    color: Theme.accent
                    property real place

                    // How far it is cannot be told: that it goes on can.
                    SequentialAnimation on place {
                        running: track.visible && !done.known
                        loops: Animation.Infinite
                        NumberAnimation {
                            to: 1
                            duration: Theme.sweep
                            easing.type: Easing.InOutQuad
                        }
                        NumberAnimation {
                            to: 0
                            duration: Theme.sweep
                            easing.type: Easing.InOutQuad
                        }
                    }
                }
            }
        }
        Label {
            width: parent.width
            visible: tile.agent.note.length > 0
            text: tile.agent.note
            color: Theme.inkFaint
            font.pixelSize: Theme.textNote
            Accessible.ignored: true
        }
        ActionButton {
            readonly property bool wanted: tile.agent.page.length > 0
            visible: wanted
            text: qsTr("Copier l’adresse")
            onWantedChanged: if (!wanted && focus) tile.forceActiveFocus(Qt.TabFocusReason)
            onClicked: tile.pageWanted()
        }
    }
    // A press on its way when the words changed meant the words before.
    Timer {
        id: changing
        interval: Application.styleHints.mouseDoubleClickInterval
    }
    Announcer {
        id: voice
    }
}
