import QtQuick
import Vorle
import Vorle.Models

// One of the agents: whether it is the one that is used, and whether it can work.
Rectangle {
    id: row

    required property agentState agent

    signal picked

    implicitHeight: words.implicitHeight + 28
    radius: 14
    color: hover.hovered ? Theme.raised : "transparent"
    border.width: agent.chosen ? 2 : 1
    border.color: agent.chosen ? Theme.ink : hover.hovered ? Theme.inkFaint : Theme.line
    activeFocusOnTab: true
    Accessible.role: Accessible.RadioButton
    Accessible.name: agent.name + ", " + agent.state
    Accessible.description: agent.text
    Accessible.checkable: true
    Accessible.checked: agent.chosen
    Accessible.focusable: true
    Accessible.focused: activeFocus
    Accessible.onPressAction: picked()
    Accessible.onToggleAction: picked()
    Keys.onSpacePressed: event => event.isAutoRepeat || picked()

    TapHandler {
        onTapped: row.picked()
    }
    HoverHandler {
        id: hover
    }
    FocusRing {
        radius: parent.radius + 3
        shown: row.activeFocus
    }
    Rectangle {
        x: 18
        y: 17
        width: 16
        height: 16
        radius: 8
        color: "transparent"
        border.width: row.agent.chosen ? 5 : 1.5
        border.color: row.agent.chosen ? Theme.ink : Theme.inkFaint
    }
    Column {
        id: words
        x: 48
        y: 14
        width: parent.width - x - 18
        spacing: 2

        Item {
            width: parent.width
            height: Math.max(name.implicitHeight, state.implicitHeight)

            Title {
                id: name
                text: row.agent.name
                size: Theme.textMenu
                Accessible.ignored: true
            }
            Label {
                id: state
                anchors.right: parent.right
                text: row.agent.ready ? "✓ " + row.agent.state : row.agent.state
                color: row.agent.ready ? Theme.inkSoft : Theme.tintInk
                font.pixelSize: Theme.textNote
                font.weight: Font.DemiBold
                Accessible.ignored: true
            }
        }
        Label {
            width: parent.width
            text: row.agent.text
            color: Theme.inkSoft
            font.pixelSize: Theme.textNote
            Accessible.ignored: true
        }
    }
}
