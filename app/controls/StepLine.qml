import QtQuick
import Vorle

// The first concrete action.
Item {
    id: step

    property string text: ""
    property int lines: 100000 // at most

    visible: text.length > 0
    implicitHeight: words.implicitHeight

    Label {
        id: head
        text: qsTr("Premier pas")
        color: Theme.inkFaint
        font.weight: Font.DemiBold
        wrapMode: Text.NoWrap
    }
    Label {
        id: words
        x: head.implicitWidth + 10
        width: parent.width - x
        maximumLineCount: step.lines
        elide: Text.ElideRight
        text: step.text
        color: Theme.inkSoft
    }
}
