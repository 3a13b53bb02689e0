import QtQuick
import Vorle
import Vorle.Models

// Who searches and judges.
SettingsPage {
    id: page

    required property Shell shell
    readonly property SettingsModel settings: shell.settings

    signal benchAsked

    name: qsTr("Ton IA")

    SettingRow {
        pages: page.pages
        key: "agent"
        bare: true

        Column {
            id: agents
            width: page.width
            spacing: 8
            topPadding: 4
            bottomPadding: 14

            Repeater {
                model: page.shell.agentStates.rows.length // made once: the keyboard stays on one

                AgentSetupTile {
                    required property int index
                    width: agents.width
                    agent: page.shell.agentStates.rows[index]
                    onPicked: page.settings.agent = agent.kind
                    onActed: action => page.shell.agentStates.act(agent.kind, action)
                    onPageWanted: page.shell.agentStates.copyPage(agent.kind)
                }
            }
        }
    }
    SettingRow {
        pages: page.pages
        key: "agentModel"
        help: page.settings.agentModel.length > 0 ? qsTr("Vide, le champ revient à celui que ton IA choisit d’elle-même.") : pages.help(key)

        TextEntry {
            id: model

            function settle() {
                if (text.trim() !== page.settings.agentModel) {
                    page.settings.agent = page.shell.agent; // the one whose model it is
                    page.settings.agentModel = text.trim();
                }
                text = page.settings.agentModel;
            }

            implicitWidth: 210
            implicitHeight: Math.max(36, Theme.textBody + 22)
            leftPadding: 12
            rightPadding: 12
            font.pixelSize: Theme.textBody
            maximumLength: 100
            placeholderText: qsTr("Celui par défaut")
            Accessible.name: qsTr("Modèle")
            text: page.settings.agentModel
            onActiveFocusChanged: if (!activeFocus) settle()
            Keys.onReturnPressed: settle()
            Keys.onEnterPressed: settle()
            Keys.onEscapePressed: event => {
                event.accepted = text !== page.settings.agentModel;
                text = page.settings.agentModel;
            }

            Connections {
                target: page.settings

                // What is being typed stays until it is done with.
                function onAgentModelChanged() {
                    if (!model.activeFocus) {
                        model.text = page.settings.agentModel;
                    }
                }
            }
        }
    }
    SettingRow {
        pages: page.pages
        key: "bench"

        ActionButton {
            text: qsTr("Ouvrir l’aperçu")
            onClicked: page.benchAsked()
        }
    }
}
