import QtQuick
import Vorle

// Who the person is: a job, proposed from what their machine shows.
OnboardingStep {
    id: step

    function takeFocus() {
        job.forceActiveFocus(Qt.TabFocusReason);
    }
    function settled(): bool {
        if (problem.text.length > 0) {
            takeFocus();
        }
        return problem.text.length === 0;
    }
    // What is proposed is shown as an answer, and taken with the step; what was typed stays.
    function showJob() {
        if (!job.edited) {
            job.text = step.shell.settings.job.length > 0 ? step.shell.settings.job : step.model.jobReason.length > 0 ? step.model.jobProposal : "";
        }
    }

    Component.onCompleted: showJob()
    Connections {
        target: step.model

        function onFoundChanged() {
            step.showJob();
        }
    }
    Connections {
        target: step.shell.settings

        function onJobChanged() { // by a command, say
            step.showJob();
        }
    }
    Label {
        text: qsTr("Ton métier")
        color: Theme.inkSoft
        font.pixelSize: Theme.textNote
    }
    TextEntry {
        id: job

        property bool edited: false

        width: parent.width
        focus: true
        placeholderText: qsTr("Ton métier, en quelques mots")
        onTextEdited: {
            edited = true;
            problem.text = step.model.setJob(text);
        }
        Keys.onEscapePressed: event => {
            event.accepted = problem.text.length > 0;
            if (event.accepted) {
                problem.text = "";
                text = step.shell.settings.job;
            }
        }
    }
    Label {
        id: problem
        width: parent.width
        visible: text.length > 0
        color: Theme.tintInk
        font.pixelSize: Theme.textNote
        Accessible.role: Accessible.AlertMessage
    }
    Label {
        width: parent.width
        visible: text.length > 0
        text: step.model.jobReason
        color: Theme.inkFaint
        font.pixelSize: Theme.textNote
    }
    Flow {
        width: parent.width
        topPadding: 6
        spacing: 8

        Repeater {
            model: step.model.jobs

            ActionButton {
                id: preset
                required property string modelData
                text: modelData
                given: job.text === modelData
                onClicked: {
                    job.edited = true;
                    job.text = preset.modelData;
                    problem.text = step.model.setJob(preset.modelData);
                }
            }
        }
    }
    Item {
        width: 1
        height: 14
    }
    Rectangle {
        width: parent.width
        height: promise.implicitHeight + 36
        radius: Theme.radiusButton
        color: Theme.sunken

        Column {
            id: promise
            x: 18
            y: 18
            width: parent.width - 36
            spacing: 2

            Label {
                width: parent.width
                text: qsTr("Rien ne part en cachette")
                font.weight: Font.DemiBold
            }
            Label {
                width: parent.width
                text: qsTr("Je ne parle qu’à ton IA et aux pages que je lis. Ce que j’enverrais se lit dans « Ton territoire », avant toute fouille.")
                color: Theme.inkSoft
                font.pixelSize: Theme.textNote
            }
        }
    }
}
