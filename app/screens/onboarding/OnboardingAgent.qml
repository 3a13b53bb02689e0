import QtQuick
import Vorle

// With whose subscription: both agents, and whether each can work now.
OnboardingStep {
    id: step

    signal demoAsked

    // The one that is used.
    function takeFocus() {
        for (let i = 0; i < rows.count; ++i) {
            const row = rows.itemAt(i) as AgentSetupTile;
            if (row.agent.chosen) {
                row.forceActiveFocus(Qt.TabFocusReason);
            }
        }
    }

    Repeater {
        id: rows
        model: step.shell.agentStates.rows.length // made once: the keyboard stays on one

        AgentSetupTile {
            required property int index
            width: step.width
            agent: step.shell.agentStates.rows[index]
            onPicked: step.shell.settings.agent = agent.kind
            onActed: action => step.shell.agentStates.act(agent.kind, action)
            onPageWanted: step.shell.agentStates.copyPage(agent.kind)
        }
    }
    Item {
        width: 1
        height: 8
    }
    Rectangle {
        width: parent.width
        height: demo.implicitHeight + 32
        radius: Theme.radiusButton
        color: Theme.sunken

        Column {
            id: demo
            x: 18
            y: 16
            width: parent.width - see.width - 54
            spacing: 2

            Label {
                width: parent.width
                text: qsTr("Pas d’abonnement sous la main ?")
                font.weight: Font.DemiBold
            }
            Label {
                width: parent.width
                text: qsTr("Une démonstration montre tout, sans rien envoyer.")
                color: Theme.inkSoft
                font.pixelSize: Theme.textNote
            }
        }
        ActionButton {
            id: see
            anchors.right: parent.right
            anchors.rightMargin: 18
            anchors.verticalCenter: parent.verticalCenter
            text: qsTr("Voir")
            Accessible.name: qsTr("Voir la démonstration")
            onClicked: step.demoAsked()
        }
    }
}
