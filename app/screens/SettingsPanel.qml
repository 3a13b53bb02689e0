import QtQuick
import Vorle

// ⌘,: the settings that change what one sees and how one works, each at once.
Panel {
    id: panel

    required property var shell

    readonly property var choices: [
        { name: qsTr("Apparence"), key: "appearance", words: ["Automatique", "Clair", "Sombre"] },
        { name: qsTr("Couleur"), key: "accent", words: ["Braise", "Framboise", "Lagune", "Indigo"] },
        { name: qsTr("IA"), key: "agent", words: ["claude", "codex"], shown: ["Claude Code", "Codex"] },
        { name: qsTr("Terminal"), key: "terminal", words: ["Terminal", "Ghostty", "iTerm"] },
        { name: qsTr("Notifications"), key: "notifyMode", words: ["À chaque fouille", "Seulement si urgent", "Jamais"] },
        { name: qsTr("Temps de veille par semaine"), key: "weeklyMinutes", words: [60, 120, 180, 240, 300], shown: ["1 h", "2 h", "3 h", "4 h", "5 h"] }]

    name: qsTr("Réglages")
    sheetWidth: 720
    bodyHeight: body.implicitHeight

    Column {
        id: body
        width: parent.width
        spacing: 18

        Title {
            text: panel.name
            size: Theme.titleOpen
        }
        Repeater {
            model: panel.choices

            Column {
                id: choice
                required property var modelData
                readonly property var present: panel.shell.setting(modelData.key, panel.shell.settingsRevision)
                width: body.width
                spacing: 8

                Label {
                    text: choice.modelData.name
                    color: Theme.inkSoft
                    font.weight: Font.Medium
                }
                Flow {
                    width: parent.width
                    spacing: 8

                    Repeater {
                        model: choice.modelData.words

                        ActionButton {
                            required property int index
                            required property var modelData
                            text: choice.modelData.shown ? choice.modelData.shown[index] : modelData
                            primary: choice.present === modelData
                            Accessible.name: primary ? qsTr("%1 : %2, choisi").arg(choice.modelData.name).arg(text) : qsTr("%1 : %2").arg(choice.modelData.name).arg(text)
                            onClicked: panel.shell.changeSetting(choice.modelData.key, modelData)
                        }
                    }
                }
            }
        }
        Label {
            width: parent.width
            text: qsTr("Tous les autres réglages : « vorle reglages » dans un terminal.")
            color: Theme.inkFaint
            font.pixelSize: Theme.textNote
        }
    }
}
