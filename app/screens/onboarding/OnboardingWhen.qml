import QtQuick
import Vorle
import Vorle.Models

// When runs start by themselves; and why the first one could not now.
OnboardingStep {
    id: step

    readonly property SettingsModel settings: shell.settings

    function takeFocus() {
        days.takeFocus();
    }

    Label {
        text: qsTr("Jours")
        color: Theme.inkSoft
        font.pixelSize: Theme.textNote
    }
    SchedulePicker {
        id: days
        name: qsTr("Jours des fouilles")
        days: step.settings.weekdays
        onPicked: days => step.settings.weekdays = days
    }
    Label {
        topPadding: 8
        text: qsTr("Heure")
        color: Theme.inkSoft
        font.pixelSize: Theme.textNote
    }
    TimeField {
        name: qsTr("Heure des fouilles")
        time: step.settings.runTime
        settings: step.settings
        enabled: step.settings.weekdays.length > 0
        onPicked: time => step.settings.runTime = time
    }
    Title {
        width: parent.width
        topPadding: 18
        text: step.settings.scheduleText
        size: Theme.titleSmall
    }
    Label {
        width: parent.width
        visible: step.settings.weekdays.length > 0
        text: Theme.mac ? qsTr("Ton Mac est éteint à cette heure-là ? Je te proposerai de rattraper la fouille quand tu reviens.") : qsTr("Ta machine est éteinte à cette heure-là ? Je te proposerai de rattraper la fouille quand tu reviens.")
        color: Theme.inkSoft
        font.pixelSize: Theme.textNote
    }
    Label {
        width: parent.width
        topPadding: 12
        visible: text.length > 0
        text: step.model.refusal.length > 0 ? step.model.refusal : step.shell.agentStates.ready ? "" : qsTr("Ton IA n’est pas encore prête : reviens d’une étape pour voir ce qui manque.")
        color: Theme.tintInk
        font.pixelSize: Theme.textNote
        Accessible.role: Accessible.AlertMessage
    }
}
