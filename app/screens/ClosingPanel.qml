import QtQuick
import Vorle
import Vorle.Models

// Asked when the window is closed during a run, an installation or a sign-in, and nothing would be
// left to reach the app by.
Panel {
    id: panel

    required property RunModel run
    required property AgentStates agents
    // What it asks about; it goes on saying so while it goes.
    property bool settingUp: false
    property bool installing: false

    signal confirmed

    function look() {
        if (run.running || agents.working) {
            settingUp = !run.running;
            installing = settingUp && agents.installing;
        } else if (shown) {
            closed(); // the question goes with what it was about
        }
    }

    name: installing ? qsTr("Quitter pendant l’installation ?") : settingUp ? qsTr("Quitter pendant la connexion ?") : qsTr("Quitter pendant la fouille ?")
    bodyHeight: body.implicitHeight
    sheetWidth: 480
    onShownChanged: {
        if (shown) {
            if (run.running || agents.working) {
                look();
            }
            confirm.forceActiveFocus(Qt.TabFocusReason);
        }
    }

    Connections {
        target: panel.run

        function onRunningChanged() {
            panel.look();
        }
    }
    Connections {
        target: panel.agents

        function onChanged() {
            panel.look();
        }
    }

    Column {
        id: body
        width: parent.width
        spacing: 14

        Title {
            text: panel.name
            size: Theme.titleOpen
        }
        Label {
            width: parent.width
            text: panel.installing ? qsTr("Il n’y a pas de barre où je pourrais rester : si tu fermes la fenêtre, je m’arrête, et l’installation avec moi.") : panel.settingUp ? qsTr("Il n’y a pas de barre où je pourrais rester : si tu fermes la fenêtre, je m’arrête, et la connexion avec moi.") : qsTr("Il n’y a pas de barre où je pourrais rester : si tu fermes la fenêtre, je m’arrête, et la fouille avec moi. Ce qui est déjà jugé t’attendra dans « À trier ».")
            color: Theme.inkSoft
        }
        Row {
            anchors.right: parent.right
            spacing: 10

            ActionButton {
                text: panel.installing ? qsTr("Continuer l’installation") : panel.settingUp ? qsTr("Continuer la connexion") : qsTr("Continuer la fouille")
                keys: qsTr("Échap")
                onClicked: panel.closed()
            }
            ActionButton {
                id: confirm
                text: qsTr("Arrêter et quitter")
                keys: "↩"
                primary: true
                onClicked: panel.confirmed()
            }
        }
    }
}
