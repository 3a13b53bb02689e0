import QtQuick
import Vorle

// Why it matters to this person, behind a stroke of the accent.
Item {
    id: why

    property string text: ""
    property int lines: 100000 // at most
    property bool selectable: false // whole, and to be taken along
    readonly property string words: qsTr("Pourquoi toi : %1").arg(text)

    visible: text.length > 0
    implicitHeight: selectable ? whole.implicitHeight : cut.implicitHeight

    Rectangle {
        width: 3
        radius: 1.5
        y: 2
        height: parent.height - 4
        color: Theme.accent
    }
    Label {
        id: cut
        x: 18
        width: parent.width - x
        visible: !why.selectable
        maximumLineCount: why.lines
        elide: Text.ElideRight
        text: why.selectable ? "" : why.words
        font.pixelSize: Theme.textLarge
        font.weight: Font.Medium
    }
    Loader {
        id: whole
        x: 18
        width: parent.width - x
        active: why.selectable
        sourceComponent: SelectableText {
            text: why.words
            font.pixelSize: Theme.textLarge
            font.weight: Font.Medium
        }
    }
}
