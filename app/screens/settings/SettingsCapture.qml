import QtQuick
import Vorle
import Vorle.Models

// How a link is taken in from outside the window.
SettingsPage {
    id: page

    required property Shell shell
    readonly property SettingsModel settings: shell.settings
    readonly property CaptureShortcut shortcut: shell.screens.captureShortcut

    name: qsTr("Capture")

    SettingRow {
        pages: page.pages
        key: "captureShortcut"
        help: page.shortcut.help
        troubled: page.shortcut.troubled

        ShortcutField {
            name: qsTr("Raccourci")
            shortcut: page.shortcut
        }
    }
    SettingRow {
        pages: page.pages
        key: "proposeTab"
        help: page.shell.quickCapture.proposalText

        Switch {
            name: qsTr("Proposer l’onglet du navigateur")
            on: page.settings.proposeTab
            onToggled: on => page.settings.proposeTab = on
        }
    }
}
