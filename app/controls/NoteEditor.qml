import QtQuick
import QtQuick.Templates as T
import Vorle
import Vorle.Models

// The person's own note on a topic: saved when the field is left, or when the topic is.
T.TextArea {
    id: editor

    required property topicCard topic

    signal edited(string topicId, string text)

    property string heldId: ""
    property string heldText: ""

    // What another hand wrote there, or undid.
    readonly property string topicId: topic.topicId
    readonly property string kept: topic.note
    onKeptChanged: {
        if (topicId === heldId && kept !== heldText && text === heldText) {
            heldText = kept;
            text = kept;
        }
    }

    function keep() {
        if (heldId.length > 0 && text !== heldText) {
            heldText = text;
            edited(heldId, text);
        }
    }
    onTopicIdChanged: {
        keep();
        if (heldId.length > 0 && activeFocus) {
            away.restart(); // what is typed on was meant for the other
        }
        heldId = topicId;
        heldText = topic.note;
        text = heldText;
    }

    // It takes the letters that go on, and does nothing with them: given up at once, they would
    // decide the topic that came in its place.
    readOnly: away.running
    Timer {
        id: away
        interval: 1000
        onTriggered: editor.focus = false
    }

    implicitHeight: Math.max(64, contentHeight + 24)
    leftPadding: 14
    rightPadding: 14
    topPadding: 11
    bottomPadding: 11
    color: Theme.ink
    selectionColor: Theme.accent
    selectedTextColor: Theme.accentInk
    font.family: Theme.textFamily
    font.pixelSize: Theme.textBody
    wrapMode: TextEdit.Wrap
    textFormat: TextEdit.PlainText
    selectByMouse: true
    Keys.priority: Keys.BeforeItem
    Keys.onTabPressed: nextItemInFocusChain(true).forceActiveFocus(Qt.TabFocusReason)
    Keys.onBacktabPressed: nextItemInFocusChain(false).forceActiveFocus(Qt.BacktabFocusReason)
    Accessible.role: Accessible.EditableText
    Accessible.name: qsTr("Ta note")
    onEditingFinished: keep()
    Keys.onPressed: event => {
        if (away.running) {
            away.restart();
            event.accepted = event.text.length > 0 && !(event.modifiers & Qt.ControlModifier) && event.key !== Qt.Key_Escape;
        }
    }
    Keys.onEscapePressed: event => {
        editor.keep();
        away.stop();
        editor.focus = false;
        event.accepted = true;
    }

    background: Rectangle {
        radius: Theme.radiusButton
        color: Theme.sunken
        border.width: editor.activeFocus ? 2 : 1
        border.color: editor.activeFocus ? Theme.accent : Theme.line
    }

    Text {
        x: editor.leftPadding
        y: editor.topPadding
        visible: editor.text.length === 0 && !editor.activeFocus
        text: qsTr("Écris ce que tu veux retrouver.")
        color: Theme.inkFaint
        font: editor.font
        Accessible.ignored: true
    }
}
