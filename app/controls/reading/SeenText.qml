import QtQuick
import Vorle

// The text that was read of a page: its first lines, and the rest when it is asked for.
Column {
    id: seen

    property string text: ""
    property bool opened: false

    readonly property int lines: 6 // while it is folded
    // Letters that fill them and one more as prose runs, so that no more is laid out.
    readonly property int enough: Math.ceil((lines + 1) * Theme.readingWidth / (0.36 * Theme.textNote))
    readonly property bool longer: text.length > enough || words.implicitHeight > frame.height + 1

    spacing: 8

    Item {
        id: frame
        width: parent.width
        height: seen.opened ? words.implicitHeight : Math.min(words.implicitHeight, seen.foldedHeight())
        clip: !seen.opened

        SelectableText {
            id: words
            width: parent.width
            words: seen.opened ? seen.text : seen.text.slice(0, seen.enough)
            color: Theme.inkSoft
            font.pixelSize: Theme.textNote
            leading: 1.5
        }
    }
    ActionButton {
        x: -leftPadding // its words under the others
        visible: seen.opened || seen.longer
        quiet: true
        text: seen.opened ? qsTr("Replier") : qsTr("Lire la suite")
        onClicked: seen.opened = !seen.opened
    }

    // Down to where the first line that is left out begins.
    function foldedHeight(): real {
        if (words.lineCount <= lines) {
            return words.implicitHeight;
        }
        const line = words.implicitHeight / words.lineCount;
        return words.positionToRectangle(words.positionAt(0, (lines + 0.5) * line)).y;
    }
}
