import QtQuick
import Vorle

// A row of a list (Rows) whose words are changed in place: ↩ opens a field over them and takes what
// it holds, Échap alone gives it up. What is written is never lost: leaving the field takes it,
// what is refused stays in it with the reason, and another window in front changes nothing. A row
// that is made anew opens its field with what was being written.
FocusScope {
    id: line

    required property int index
    required property string key // what the list knows it by
    required property string shown // its name
    property var drafts: Object.create(null) // the list's: what is being written, by key
    property string given: "" // what its field begins with
    property string prompt: ""
    property bool mayBeEmpty: false
    property rect place // of its field
    property int fieldPadding: 10
    property int fieldSize: Theme.textBody
    property Item holder: line // what has the keyboard while nothing is written
    property bool sideways: false // ← → walk too
    property bool stop: false // the Tab key stops here
    property string problem: "" // why what is written was not taken
    readonly property bool editing: editor.active
    readonly property bool hovered: hover.hovered
    readonly property bool writing: field?.activeFocus ?? false
    readonly property TextEntry field: editor.item as TextEntry

    signal written(string text) // answered by settle()
    signal removed
    signal stepped(int by)

    function takeFocus() {
        holder.forceActiveFocus(Qt.TabFocusReason);
    }
    function edit() {
        editor.active = true;
        field.selectAll();
        field.forceActiveFocus(Qt.TabFocusReason);
    }
    // What is written goes where it belongs.
    function leave() {
        const text = field?.text ?? given;
        if (text === given || (text.trim().length === 0 && !mayBeEmpty)) {
            giveUp();
        } else {
            delete drafts[key];
            written(text);
        }
    }
    function settle(refusal: string) {
        if (refusal.length > 0) {
            problem = refusal;
            drafts[key] = field.text;
        } else {
            giveUp();
        }
    }
    function giveUp() {
        const had = writing;
        delete drafts[key];
        editor.active = false;
        editor.focus = false; // it would keep the keyboard in the row's place
        problem = "";
        if (had) {
            takeFocus();
        }
    }
    // The field has lost the keyboard, to something else in this window.
    function release() {
        if (editing && !writing && Window.active) {
            leave();
        }
    }

    Accessible.role: Accessible.ListItem
    Accessible.name: shown
    Component.onCompleted: {
        if (drafts[key] !== undefined) {
            editor.active = true;
            field.text = drafts[key];
        }
    }
    Keys.onPressed: event => {
        const entered = event.key === Qt.Key_Return || event.key === Qt.Key_Enter;
        if (line.editing && line.writing) {
            event.accepted = entered; // the field's own, and nobody else's
            return;
        }
        if (event.modifiers & ~Qt.KeypadModifier) {
            return;
        }
        event.accepted = true;
        if (event.key === Qt.Key_Up || (line.sideways && event.key === Qt.Key_Left)) {
            line.stepped(-1);
        } else if (event.key === Qt.Key_Down || (line.sideways && event.key === Qt.Key_Right)) {
            line.stepped(1);
        } else if (event.key === Qt.Key_Delete || event.key === Qt.Key_Backspace) {
            line.removed();
        } else if ((entered || event.key === Qt.Key_F2) && !event.isAutoRepeat) {
            line.edit();
        } else {
            event.accepted = false;
        }
    }

    HoverHandler {
        id: hover
    }
    Loader {
        id: editor
        active: false
        x: line.place.x
        y: line.place.y
        width: line.place.width
        height: line.place.height
        z: 1
        onLoaded: line.field.text = line.given
        sourceComponent: TextEntry {
            leftPadding: line.fieldPadding
            rightPadding: line.fieldPadding
            font.pixelSize: line.fieldSize
            placeholderText: line.prompt
            onTextEdited: line.drafts[line.key] = text
            onAccepted: line.leave()
            onActiveFocusChanged: if (!activeFocus) Qt.callLater(line.release) // qmllint disable
            Keys.onEscapePressed: line.giveUp()
        }
    }
}
