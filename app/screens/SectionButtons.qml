import QtQuick
import Vorle.Models

// Which action stands on which button of a card, by section, and the line under its list.
QtObject {
    id: buttons

    required property var keyboard

    function button(text: string, action: int, primary: bool): var {
        return { text: text, keys: keyboard.keys(action), action: action, primary: primary };
    }
    function verdict(text: string, action: int, worth: string): var {
        return { text: text, keys: keyboard.keys(action), action: action, primary: false, worth: worth };
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
        verdict(qsTr("Bof"), KeyboardMap.WorthMeh, "meh"),
        verdict(qsTr("Utile"), KeyboardMap.WorthUseful, "useful"),
        verdict(qsTr("Pépite"), KeyboardMap.WorthGem, "gem")]

    // The line under each list.
    readonly property string programHint: qsTr("%1 premier pas · %2 fait · %3 reporter · %4 retirer").arg(keyboard.keys(KeyboardMap.FirstStep)).arg(keyboard.keys(KeyboardMap.Done)).arg(keyboard.keys(KeyboardMap.Postpone)).arg(keyboard.keys(KeyboardMap.Remove))
    readonly property string reserveHint: qsTr("%1 garder · %2 remettre à trier · 1 2 3 bof, utile, pépite").arg(keyboard.keys(KeyboardMap.Keep)).arg(keyboard.keys(KeyboardMap.BackToTriage))
}
