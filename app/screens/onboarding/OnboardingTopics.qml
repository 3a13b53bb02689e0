import QtQuick
import Vorle
import Vorle.Models

// The person's topics of interest, each with how much it matters.
OnboardingStep {
    id: step

    readonly property TerritoryModel territory: shell.territory

    property bool took: false // ↩ was for the line that adds

    Keys.onReturnPressed: event => event.accepted = took
    Keys.onEnterPressed: event => event.accepted = took

    function takeFocus() {
        adder.takeFocus();
    }
    function settled(): bool {
        if (!rows.settled()) {
            return false;
        }
        adder.problem = ""; // of a proposal that was refused: there is nothing to mend
        if (adder.text.trim().length > 0) {
            adder.settle(territory.addInterest(adder.text));
        }
        if (adder.problem.length > 0) {
            adder.takeFocus();
        }
        return adder.problem.length === 0;
    }

    function passOver() {
        rows.settled();
        if (adder.text.trim().length > 0) {
            territory.addInterest(adder.text);
        }
        adder.settle("");
    }

    // What is being written stays.
    function propose(name: string) {
        proposals.drop(() => adder.problem = step.territory.addInterest(name));
    }

    AddField {
        id: adder
        width: parent.width
        drafts: step.shell.drafts
        draft: "firstInterest"
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
        keyboard: step.shell.keyboard
        Accessible.name: qsTr("Tes domaines")
        onEmptied: adder.takeFocus()
        onSteppedOut: by => {
            if (by < 0) {
                adder.takeFocus();
            }
        }
    }
    OrphanLine {
        list: rows
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
    Rows {
        id: proposals
        width: parent.width
        spacing: 8
        model: step.model.topicProposals
        onEmptied: adder.takeFocus()
        delegate: PillButton {
            required property int index
            required property nameRow row

            function takeFocus() {
                forceActiveFocus(Qt.TabFocusReason);
            }
            text: "+ " + row.shown
            Accessible.name: qsTr("Ajouter %1").arg(row.shown)
            onClicked: step.propose(row.name)
        }
    }
}
