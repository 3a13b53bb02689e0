import QtQuick
import Vorle
import Vorle.Models

// ⌘,: the settings that change what one sees and how one works, each at once.
Panel {
    id: panel

    required property SettingsModel settings
    required property string agentInUse // chosen by what is ready where nobody chose one
    required property list<string> terminals // that there can be here

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
            words: panel.settings.appearances
            present: panel.settings.appearance
            onPicked: index => panel.settings.appearance = words[index]
        }
        Choice {
            width: body.width
            name: qsTr("Couleur")
            labels: [qsTr("Braise"), qsTr("Framboise"), qsTr("Lagune"), qsTr("Indigo")]
            dots: Object.values(Theme.accents).map(pair => Theme.dark ? pair.dark : pair.light)
            words: panel.settings.accents
            present: panel.settings.accent
            onPicked: index => panel.settings.accent = words[index]
        }
        Choice {
            width: body.width
            name: qsTr("IA")
            labels: ["Claude Code", "Codex"]
            words: ["claude", "codex"]
            present: panel.agentInUse
            onPicked: index => panel.settings.agent = words[index]
        }
        Choice {
            width: body.width
            name: qsTr("Terminal")
            labels: panel.terminals
            words: panel.terminals
            present: panel.settings.terminal
            onPicked: index => panel.settings.terminal = words[index]
        }
        Choice {
            width: body.width
            name: qsTr("Notifications")
            labels: [qsTr("À chaque fouille"), qsTr("Seulement si urgent"), qsTr("Jamais")]
            words: panel.settings.notifyModes
            present: panel.settings.notifyMode
            onPicked: index => panel.settings.notifyMode = words[index]
        }
        Choice {
            readonly property real hours: panel.settings.weeklyMinutes / 60

            width: body.width
            name: qsTr("Temps de veille par semaine")
            labels: ["1 h", "2 h", "3 h", "4 h", "5 h"]
            chosen: hours === Math.round(hours) && hours <= labels.length ? hours - 1 : -1
            onPicked: index => panel.settings.weeklyMinutes = 60 * (index + 1)
        }
        Label {
            width: parent.width
            text: qsTr("Tous les autres réglages : « vorle reglages » dans un terminal.")
            color: Theme.inkFaint
            font.pixelSize: Theme.textNote
        }
    }
}
