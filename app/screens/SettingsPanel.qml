import QtQuick
import Vorle

// ⌘,: the settings that change what one sees and how one works, each at once.
Panel {
    id: panel

    required property var shell

    readonly property var choices: [
        { name: qsTr("Apparence"), key: "appearance", words: ["Automatique", "Clair", "Sombre"], shown: [qsTr("Automatique"), qsTr("Clair"), qsTr("Sombre")] },
        { name: qsTr("Couleur"), key: "accent", words: Object.keys(Theme.accents), shown: [qsTr("Braise"), qsTr("Framboise"), qsTr("Lagune"), qsTr("Indigo")] },
        { name: qsTr("IA"), key: "agent", words: ["claude", "codex"], shown: ["Claude Code", "Codex"] },
        { name: qsTr("Terminal"), key: "terminal", words: shell.terminals },
        { name: qsTr("Notifications"), key: "notifyMode", words: ["À chaque fouille", "Seulement si urgent", "Jamais"], shown: [qsTr("À chaque fouille"), qsTr("Seulement si urgent"), qsTr("Jamais")] },
        { name: qsTr("Temps de veille par semaine"), key: "weeklyMinutes", words: [60, 120, 180, 240, 300], shown: ["1 h", "2 h", "3 h", "4 h", "5 h"] }]

    name: qsTr("Réglages")
    sheetWidth: 680
    bodyHeight: body.implicitHeight
    onShownChanged: {
        if (shown) {
            (settings.itemAt(0) as Choice).takeFocus();
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
        Repeater {
            id: settings
            model: panel.choices

            Choice {
                required property var modelData
                // The agent is chosen by what is ready where nobody chose it.
                readonly property var present: modelData.key === "agent" ? panel.shell.agent : panel.shell.setting(modelData.key, panel.shell.settingsRevision)

                width: body.width
                name: modelData.name
                labels: modelData.shown ?? modelData.words
                dots: modelData.key === "accent" ? Object.values(Theme.accents).map(pair => Theme.dark ? pair.dark : pair.light) : []
                chosen: modelData.words.indexOf(present)
                onPicked: index => panel.shell.changeSetting(modelData.key, modelData.words[index])
            }
        }
        Label {
            width: parent.width
            text: qsTr("Tous les autres réglages : « vorle reglages » dans un terminal.")
            color: Theme.inkFaint
            font.pixelSize: Theme.textNote
        }
    }
}
