import QtQuick
import Vorle

// A text of the reading page: as a label looks, and with words the mouse can take along. It leaves
// the keyboard where single keys decide.
TextEdit {
    id: shown

    property string words: "" // what it says; its text follows
    property real leading: Theme.leading
    property real line: 0 // the height of a line; 0: by `leading`
    property string code: "" // a passage that is set as code
    property int codeAt: 0 // where it begins

    readOnly: true
    activeFocusOnPress: false
    selectByMouse: true
    persistentSelection: true
    textFormat: TextEdit.PlainText
    wrapMode: TextEdit.Wrap
    font.family: Theme.textFamily
    font.pixelSize: Theme.textBody
    color: Theme.ink
    selectionColor: Theme.accent
    selectedTextColor: Theme.accentInk
    Accessible.role: Accessible.StaticText
    Accessible.name: text

    // The page keeps one text marked at a time, and copies it.
    onSelectedTextChanged: {
        for (let above = parent; above !== null && selectedText.length > 0; above = above.parent) {
            if (above instanceof ReadingPlace) {
                (above as ReadingPlace).mark(shown);
                return;
            }
        }
    }

    Component.onCompleted: lines.document = textDocument

    TextLeading {
        id: lines
        text: shown.words
        height: shown.leading
        line: shown.line
        code: shown.code
        codeAt: shown.codeAt
        codeFamily: Theme.codeFamily
        codeSize: Theme.textNote
        codeColor: Theme.ink
    }
}
