import QtQuick
import QtQuick.Templates as T
import Vorle
import Vorle.Models

// A time of day, typed ("8", "8:30", "830") or taken by five minutes with the arrows. What is being
// typed is a draft until ↩, or until the keyboard leaves; one that is no time is told and kept out.
T.TextField {
    id: field

    required property string name
    required property string time // "8:00"
    required property SettingsModel settings // which reads times

    readonly property bool wrong: text !== time && !settings.isTime(text)

    signal picked(string time)

    function takeFocus() {
        forceActiveFocus(Qt.TabFocusReason);
        selectAll();
    }
    function settle() {
        if (text !== time && !wrong) {
            picked(text);
        }
        showTime();
    }
    function showTime() {
        text = time;
    }
    function move(minutes: int) {
        picked(settings.laterTime(wrong ? time : text, minutes));
        showTime();
        selectAll();
    }

    implicitWidth: Math.max(76, contentWidth + 2 * leftPadding + 8)
    implicitHeight: Math.max(34, Theme.textBody + 20)
    leftPadding: 14
    rightPadding: 14
    horizontalAlignment: TextInput.AlignHCenter
    verticalAlignment: TextInput.AlignVCenter
    maximumLength: 8
    color: wrong ? Theme.tintInk : Theme.ink
    selectionColor: Theme.accent
    selectedTextColor: Theme.accentInk
    font.family: Theme.textFamily
    font.pixelSize: Theme.textMenu
    selectByMouse: true
    Accessible.role: Accessible.EditableText
    Accessible.name: name
    Accessible.description: wrong ? qsTr("Ce n’est pas une heure.") : ""

    Component.onCompleted: showTime()
    onTimeChanged: if (!activeFocus || !wrong) showTime()
    onActiveFocusChanged: activeFocus ? selectAll() : settle()
    Keys.onReturnPressed: settle()
    Keys.onEnterPressed: settle()
    Keys.onUpPressed: move(5)
    Keys.onDownPressed: move(-5)
    // What was typed is given up first.
    Keys.onEscapePressed: event => {
        event.accepted = text !== time;
        showTime();
        selectAll();
    }

    background: Rectangle {
        radius: 11
        color: Theme.sunken
        border.width: field.activeFocus || field.wrong ? 2 : 1
        border.color: field.wrong ? Theme.tintInk : field.activeFocus ? Theme.accent : Theme.line
    }
}
