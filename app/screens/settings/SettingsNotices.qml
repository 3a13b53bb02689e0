import QtQuick
import Vorle
import Vorle.Models

// What is told while the window is not looked at, and when.
SettingsPage {
    id: page

    required property Shell shell
    readonly property SettingsModel settings: shell.settings
    readonly property string trouble: shell.screens.desktop.noticesTrouble

    function indexOf(word: string, words: list<string>): int {
        for (let i = 0; i < words.length; ++i) {
            if (words[i] === word) {
                return i;
            }
        }
        return -1;
    }

    name: qsTr("Notifications")

    SettingRow {
        pages: page.pages
        key: "notifyMode"
        help: page.trouble.length > 0 ? page.trouble : page.pages.help(key)
        troubled: page.trouble.length > 0

        Segments {
            name: qsTr("Après une fouille")
            labels: page.settings.notifyModes
            upDown: false
            chosen: page.indexOf(page.settings.notifyMode, page.settings.notifyModes)
            onPicked: index => {
                page.settings.notifyMode = page.settings.notifyModes[index];
                page.shell.screens.desktop.askForNotices();
            }
        }
    }
    SettingRow {
        pages: page.pages
        key: "notifyReminder"

        Switch {
            name: qsTr("Rappel du programme")
            on: page.settings.notifyReminder
            onToggled: on => {
                page.settings.notifyReminder = on;
                page.shell.screens.desktop.askForNotices();
            }
        }
    }
    SettingRow {
        pages: page.pages
        key: "reminder"
        present: page.settings.notifyReminder

        TimeField {
            name: qsTr("Heure du rappel")
            settings: page.settings
            time: page.settings.reminder
            onPicked: time => page.settings.reminder = time
        }
    }
}
