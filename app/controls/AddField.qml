import QtQuick
import Vorle
import Vorle.Models

// A line that adds what is written to the list above it; what cannot be taken is said below. What
// stands in it and was not taken is there again at the next start.
Column {
    id: adder

    required property string prompt
    property alias text: field.text
    property Drafts drafts: null
    property string draft: "" // its name there
    property string problem: ""

    signal added(string text)

    function takeFocus() {
        field.forceActiveFocus(Qt.TabFocusReason);
    }
    // Told how it went: what was taken leaves room for the next.
    function settle(refusal: string) {
        problem = refusal;
        if (refusal.length === 0) {
            field.clear();
        }
    }

    spacing: 6
    Component.onCompleted: if (drafts !== null) field.text = drafts.of(draft)

    TextEntry {
        id: field
        width: parent.width
        implicitHeight: 40
        rightPadding: 40
        font.pixelSize: Theme.textBody
        placeholderText: adder.prompt
        hint: qsTr("Touche %1").arg("↩")
        onTextChanged: adder.drafts?.keep(adder.draft, text)
        onTextEdited: adder.problem = ""
        onAccepted: if (text.trim().length > 0) adder.added(text)
        Keys.onEscapePressed: event => {
            event.accepted = text.length > 0;
            adder.settle("");
        }

        KeyCap {
            anchors.right: parent.right
            anchors.rightMargin: 12
            anchors.verticalCenter: parent.verticalCenter
            keys: "↩"
            bare: true
        }
    }
    Label {
        width: parent.width
        visible: text.length > 0
        text: adder.problem
        color: Theme.tintInk
        font.pixelSize: Theme.textNote
        Accessible.role: Accessible.AlertMessage
    }
}
