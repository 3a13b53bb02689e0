import QtQuick
import Vorle
import Vorle.Models

// The last of a row of pills: a button that turns into a line to write on. What was written and not
// taken stays in it, at the next start too, until it is taken or given up (Échap).
Item {
    id: adder

    required property string text
    property string prompt: text
    property bool writes: true // else it only asks
    property Drafts drafts: null
    property string draft: "" // its name there
    readonly property bool writing: field.active
    readonly property TextEntry line: field.item as TextEntry

    signal asked
    signal added(string name) // answered by settle()

    function takeFocus() {
        if (line !== null) {
            line.forceActiveFocus(Qt.TabFocusReason);
        } else {
            button.forceActiveFocus(Qt.TabFocusReason);
        }
    }
    function stop() {
        const had = line?.activeFocus ?? false;
        drafts?.keep(draft, "");
        field.active = false;
        field.focus = false;
        if (had) {
            takeFocus();
        }
    }
    // Told how it went: what was taken leaves room for the next.
    function settle(refusal: string) {
        if (refusal.length === 0) {
            line?.clear();
        }
    }
    function release() {
        if (line !== null && !line.activeFocus && line.text.trim().length === 0) {
            stop();
        }
    }

    implicitWidth: writing ? 240 : button.implicitWidth
    implicitHeight: 30
    Component.onCompleted: {
        if (drafts !== null && drafts.of(draft).length > 0) {
            field.restores = true;
            field.active = true;
        }
    }

    PillButton {
        id: button
        visible: !adder.writing
        text: adder.text
        onClicked: {
            if (adder.writes) {
                field.active = true;
            } else {
                adder.asked();
            }
        }
    }
    Loader {
        id: field

        property bool restores: false

        active: false
        onLoaded: {
            if (restores) {
                adder.line.text = adder.drafts.of(adder.draft);
                restores = false;
            } else {
                adder.takeFocus();
            }
        }
        sourceComponent: TextEntry {
            implicitWidth: 240
            implicitHeight: 30
            leftPadding: 12
            rightPadding: 12
            font.pixelSize: Theme.textNote
            placeholderText: adder.prompt
            onTextChanged: adder.drafts?.keep(adder.draft, text)
            onAccepted: {
                if (text.trim().length === 0) {
                    adder.stop();
                } else {
                    adder.added(text);
                }
            }
            onActiveFocusChanged: if (!activeFocus) Qt.callLater(adder.release) // qmllint disable
            Keys.onEscapePressed: adder.stop()
        }
    }
}
