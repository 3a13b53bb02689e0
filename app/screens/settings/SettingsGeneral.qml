import QtQuick
import Vorle
import Vorle.Models

// How it looks, and where a first step is taken.
SettingsPage {
    id: page

    required property Shell shell
    readonly property SettingsModel settings: shell.settings
    readonly property UpdateModel updates: shell.screens.updates
    readonly property var scales: [80, 90, 100, 115, 130, 150]

    function indexOf(word: string, words: list<string>): int {
        for (let i = 0; i < words.length; ++i) {
            if (words[i] === word) {
                return i;
            }
        }
        return -1;
    }

    signal feedbackAsked
    signal updateAsked

    name: qsTr("Général")

    SettingRow {
        pages: page.pages
        key: "appearance"

        Segments {
            name: qsTr("Apparence")
            labels: [qsTr("Automatique"), qsTr("Clair"), qsTr("Sombre")]
            upDown: false
            chosen: page.indexOf(page.settings.appearance, page.settings.appearances)
            onPicked: index => page.settings.appearance = page.settings.appearances[index]
        }
    }
    SettingRow {
        pages: page.pages
        key: "accent"

        Swatches {
            name: qsTr("Couleur")
            words: page.settings.accents
            colours: Object.values(Theme.accents).map(pair => Theme.dark ? pair.dark : pair.light)
            present: page.settings.accent
            onPicked: word => page.settings.accent = word
        }
    }
    SettingRow {
        pages: page.pages
        key: "textScale"

        Segments {
            name: qsTr("Taille du texte")
            labels: page.scales.map(scale => qsTr("%1 %").arg(scale))
            upDown: false
            chosen: page.scales.indexOf(page.settings.textScale)
            onPicked: index => page.settings.textScale = page.scales[index]
        }
    }
    SettingRow {
        readonly property DesktopSettings desktop: page.shell.screens.desktop

        pages: page.pages
        key: "openAtLogin"
        present: !page.shell.demo
        help: desktop.loginTrouble.length > 0 ? desktop.loginTrouble : desktop.iconTrouble.length > 0 ? desktop.iconTrouble : page.pages.help(key)
        troubled: desktop.loginTrouble.length > 0

        Switch {
            name: page.pages.title("openAtLogin")
            on: page.shell.screens.desktop.opensAtLogin
            onToggled: on => page.shell.screens.desktop.opensAtLogin = on
        }
    }
    SettingRow {
        pages: page.pages
        key: "terminal"
        help: page.shell.terminals.length > 0 ? pages.help(key) : qsTr("Je n’ai trouvé aucun terminal sur cette machine.")
        troubled: page.shell.terminals.length === 0

        Segments {
            visible: page.shell.terminals.length > 0
            name: qsTr("Terminal")
            labels: page.shell.terminals
            upDown: false
            chosen: page.indexOf(page.settings.terminal, page.shell.terminals)
            onPicked: index => page.settings.terminal = page.shell.terminals[index]
        }
    }
    SettingRow {
        pages: page.pages
        key: "update"
        present: !page.shell.demo
        help: page.updates.obstacle.length > 0 ? page.updates.obstacle : page.updates.versionText

        ActionButton {
            visible: page.updates.obstacle.length === 0
            text: qsTr("Rechercher")
            Accessible.name: page.pages.title("update")
            onClicked: page.updateAsked()
        }
    }
    SettingRow {
        pages: page.pages
        key: "updateChecks"
        present: !page.shell.demo && page.updates.obstacle.length === 0

        Switch {
            name: page.pages.title("updateChecks")
            on: page.updates.checksByItself
            onToggled: on => page.updates.checksByItself = on
        }
    }
    SettingRow {
        pages: page.pages
        key: "updateInstalls"
        present: !page.shell.demo && page.updates.obstacle.length === 0 && page.updates.checksByItself

        Switch {
            name: page.pages.title("updateInstalls")
            on: page.updates.installsByItself
            onToggled: on => page.updates.installsByItself = on
        }
    }
    SettingRow {
        pages: page.pages
        key: "feedback"

        ActionButton {
            text: qsTr("Écrire…")
            Accessible.name: qsTr("Écrire un retour")
            onClicked: page.feedbackAsked()
        }
    }
}
