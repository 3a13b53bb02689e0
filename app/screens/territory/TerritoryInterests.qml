import QtQuick
import Vorle
import Vorle.Models

// The topics of interest, each with how much it matters.
ListSection {
    id: section

    required property TerritoryModel model
    required property KeyboardMap keyboard

    name: qsTr("Domaines")
    list: rows
    prompt: qsTr("Ajouter un domaine")
    draft: "interest"
    onAdded: text => settle(model.addInterest(text))
    corner: Label {
        text: "<b>" + section.model.interests.count + "</b>" + section.model.counterText
        textFormat: Text.StyledText
        color: section.model.diluted ? Theme.tintInk : Theme.inkFaint
        font.pixelSize: Theme.textNote
        wrapMode: Text.NoWrap
        Accessible.name: section.model.interests.count + section.model.counterText
    }

    InterestRows {
        id: rows
        width: parent.width
        territory: section.model
        keyboard: section.keyboard
        Accessible.name: section.name
    }
}
