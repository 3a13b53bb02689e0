import QtQuick
import Vorle
import Vorle.Models

// When a run starts by itself, how far it looks, and how much of it is a week's reading.
SettingsPage {
    id: page

    required property Shell shell
    readonly property SettingsModel settings: shell.settings

    signal territoryAsked
    signal reportAsked

    name: qsTr("Fouille")

    SettingRow {
        pages: page.pages
        key: "weekdays"
        help: page.settings.scheduleText

        SchedulePicker {
            name: "" // its row has it
            days: page.settings.weekdays
            onPicked: days => page.settings.weekdays = days
        }
    }
    SettingRow {
        pages: page.pages
        key: "runTime"
        help: page.pages.nextRunText

        TimeField {
            name: qsTr("Heure de la fouille")
            settings: page.settings
            time: page.settings.runTime
            onPicked: time => page.settings.runTime = time
        }
    }
    SettingRow {
        pages: page.pages
        key: "weeklyMinutes"

        Stepper {
            name: qsTr("Temps de veille par semaine")
            text: page.pages.weeklyText
            least: page.settings.weeklyMinutes <= 0
            most: page.settings.weeklyMinutes >= 10080
            onStepped: by => page.settings.weeklyMinutes = page.pages.steppedMinutes(page.settings.weeklyMinutes, by)
        }
    }
    SettingRow {
        pages: page.pages
        key: "radius"
        help: page.pages.radiusText

        ActionButton {
            text: qsTr("Ton territoire")
            onClicked: page.territoryAsked()
        }
    }
    SettingRow {
        pages: page.pages
        key: "lastRun"
        help: page.shell.run.lastRunText.length > 0 ? page.shell.run.lastRunText : qsTr("Pas encore de fouille.")

        ActionButton {
            text: qsTr("Voir le compte rendu")
            usable: page.shell.run.lastRunText.length > 0
            onClicked: page.reportAsked()
        }
    }
    SettingRow {
        pages: page.pages
        key: "rest"
        present: page.shell.run.waiting
        help: page.shell.run.waitingText

        Row {
            spacing: 8

            ActionButton {
                text: qsTr("Continuer maintenant")
                onClicked: page.shell.run.goOn()
            }
            ActionButton {
                quiet: true
                text: qsTr("Laisser")
                onClicked: page.shell.run.giveUpRest()
            }
        }
    }
}
