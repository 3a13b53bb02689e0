import QtQuick
import QtQuick.Window
import Vorle
import Vorle.Models

// The person's topics of interest, each with how much it matters.
OnboardingStep {
    id: step

    readonly property TerritoryModel territory: shell.territory

    property bool took: false // ↩ was for the line that adds

    // A name that is being written ends with ↩, and goes nowhere.
    function keepsReturn(): bool {
        const field = Window.activeFocusItem as TextInput;
        return took || (field !== null && field.parent !== adder);
    }

    Keys.onReturnPressed: event => event.accepted = keepsReturn()
    Keys.onEnterPressed: event => event.accepted = keepsReturn()

    function takeFocus() {
        adder.takeFocus();
    }

    AddField {
        id: adder
        width: parent.width
        prompt: qsTr("Ajouter un domaine")
        onAdded: text => {
            step.took = true;
            Qt.callLater(() => step.took = false);
            settle(step.territory.addInterest(text));
        }
    }
    InterestRows {
        id: rows
        width: parent.width
        territory: step.territory
        Accessible.name: qsTr("Tes domaines")
        onEmptied: adder.takeFocus()
        onSteppedOut: by => {
            if (by < 0) {
                adder.takeFocus();
            }
        }
    }
    Label {
        width: parent.width
        visible: rows.count > 0
        text: "<b>" + rows.count + "</b>" + step.territory.counterText
        textFormat: Text.StyledText
        color: step.territory.diluted ? Theme.tintInk : Theme.inkFaint
        font.pixelSize: Theme.textNote
        Accessible.name: rows.count + step.territory.counterText
    }
    Label {
        width: parent.width
        topPadding: 8
        visible: proposals.count > 0
        text: qsTr("D’après tes projets")
        color: Theme.inkSoft
        font.pixelSize: Theme.textNote
    }
    Flow {
        width: parent.width
        spacing: 8

        Repeater {
            id: proposals
            model: step.model.topicProposals

            PillButton {
                required property string modelData
                text: "+ " + modelData
                Accessible.name: qsTr("Ajouter %1").arg(modelData)
                onClicked: adder.settle(step.territory.addInterest(modelData))
            }
        }
    }
}
