import QtQuick
import Vorle
import Vorle.Models

// ⌘,: the settings that change what one sees and how one works, each at once.
Panel {
    id: panel

    required property SettingsModel settings
    required property string agentInUse // chosen by what is ready where nobody chose one
    required property list<string> terminals // that there can be here

    readonly property list<string> agents: ["claude", "codex"]
    readonly property list<int> budgets: [60, 120, 180, 240, 300]

    name: qsTr("Réglages")
    sheetWidth: 680
    bodyHeight: body.implicitHeight
    onShownChanged: {
        if (shown) {
            first.takeFocus();
        }
    }

    Column {
        id: body
        width: parent.width
        spacing: 16

        Title {
            text: panel.name
            size: Theme.titleOpen
        }
        Choice {
            id: first
            width: body.width
            name: qsTr("Apparence")
            labels: [qsTr("Automatique"), qsTr("Clair"), qsTr("Sombre")]
            chosen: panel.settings.appearances.indexOf(panel.settings.appearance)
            onPicked: index => panel.settings.appearance = panel.settings.appearances[index]
        }
        Choice {
            width: body.width
            name: qsTr("Couleur")
            labels: [qsTr("Braise"), qsTr("Framboise"), qsTr("Lagune"), qsTr("Indigo")]
            dots: panel.settings.accents.map(name => Theme.dark ? Theme.accents[name].dark : Theme.accents[name].light)
            chosen: panel.settings.accents.indexOf(panel.settings.accent)
            onPicked: index => panel.settings.accent = panel.settings.accents[index]
        }
        Choice {
            width: body.width
            name: qsTr("IA")
            labels: ["Claude Code", "Codex"]
            chosen: panel.agents.indexOf(panel.agentInUse)
            onPicked: index => panel.settings.agent = panel.agents[index]
        }
        Choice {
            width: body.width
            name: qsTr("Terminal")
            labels: panel.terminals
            chosen: panel.terminals.indexOf(panel.settings.terminal)
            onPicked: index => panel.settings.terminal = panel.terminals[index]
        }
        Choice {
            width: body.width
            name: qsTr("Notifications")
            labels: [qsTr("À chaque fouille"), qsTr("Seulement si urgent"), qsTr("Jamais")]
            chosen: panel.settings.notifyModes.indexOf(panel.settings.notifyMode)
            onPicked: index => panel.settings.notifyMode = panel.settings.notifyModes[index]
        }
        Choice {
            width: body.width
            name: qsTr("Temps de veille par semaine")
            labels: ["1 h", "2 h", "3 h", "4 h", "5 h"]
            chosen: panel.budgets.indexOf(panel.settings.weeklyMinutes)
            onPicked: index => panel.settings.weeklyMinutes = panel.budgets[index]
        }
        Label {
            width: parent.width
            text: qsTr("Tous les autres réglages : « vorle reglages » dans un terminal.")
            color: Theme.inkFaint
            font.pixelSize: Theme.textNote
        }
    }
}
