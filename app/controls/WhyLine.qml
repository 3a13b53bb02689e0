import QtQuick
import Vorle

// Why it matters to this person, behind a stroke of the accent.
Item {
    id: why

    property string text: ""
    property int lines: 100000 // at most

    visible: text.length > 0
    implicitHeight: words.implicitHeight

    Rectangle {
        width: 3
        radius: 1.5
        y: 2
        height: parent.height - 4
        color: Theme.accent
    }
    Label {
        id: words
        x: 18
        width: parent.width - x
        maximumLineCount: why.lines
        elide: Text.ElideRight
        text: qsTr("Pourquoi toi : %1").arg(why.text)
        font.pixelSize: Theme.textLarge
        font.weight: Font.Medium
    }
}
