import QtQuick
import Vorle
import Vorle.Models

// The topics of interest, each with how much it matters.
PageSection {
    id: section

    required property TerritoryModel model

    name: qsTr("Domaines")
    gap: 4
    corner: Label {
        text: "<b>" + section.model.interests.count + "</b>" + section.model.counterText
        textFormat: Text.StyledText
        color: section.model.diluted ? Theme.tintInk : Theme.inkFaint
        font.pixelSize: Theme.textNote
        wrapMode: Text.NoWrap
        Accessible.name: section.model.interests.count + section.model.counterText
    }

    function takeFocus() {
        if (rows.count > 0) {
            rows.take(rows.here);
        } else {
            adder.takeFocus();
        }
    }

    InterestRows {
        id: rows
        width: parent.width
        territory: section.model
        Accessible.name: section.name
        onEmptied: adder.takeFocus()
        onSteppedOut: by => {
            if (by > 0) {
                adder.takeFocus();
            }
        }
    }
    Rectangle {
        width: parent.width
        height: 1
        color: Theme.line
        visible: rows.count > 0
    }
    Item {
        width: 1
        height: 10
    }
    AddField {
        id: adder
        width: parent.width
        prompt: qsTr("Ajouter un domaine")
        onAdded: text => settle(section.model.addInterest(text))
    }
}
