import QtQuick
import Vorle.Models

// Which action stands on which button of a card, by section.
QtObject {
    id: buttons

    required property var keyboard

    function button(text: string, action: int, primary: bool): var {
        return { text: text, keys: keyboard.keys(action), action: action, primary: primary };
    }
    readonly property var inbox: [
        button(qsTr("Garder"), KeyboardMap.Keep, true),
        button(qsTr("Plus tard"), KeyboardMap.Later, false),
        button(qsTr("Pas pour moi"), KeyboardMap.Dismiss, false)]
    readonly property var program: [
        button(qsTr("Premier pas"), KeyboardMap.FirstStep, true),
        button(qsTr("Fait"), KeyboardMap.Done, false),
        button(qsTr("Reporter"), KeyboardMap.Postpone, false),
        button(qsTr("Retirer"), KeyboardMap.Remove, false)]
    readonly property var reserve: [
        button(qsTr("Garder"), KeyboardMap.Keep, true),
        button(qsTr("Remettre à trier"), KeyboardMap.BackToTriage, false),
        button(qsTr("Bof"), KeyboardMap.WorthMeh, false),
        button(qsTr("Utile"), KeyboardMap.WorthUseful, false),
        button(qsTr("Pépite"), KeyboardMap.WorthGem, false)]
}
