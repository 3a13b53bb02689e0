import QtQuick
import Vorle

// The first concrete action.
Item {
    id: step

    property string text: ""
    property int lines: 100000 // at most
    property bool selectable: false // whole, and to be taken along

    visible: text.length > 0
    implicitHeight: selectable ? whole.implicitHeight : cut.implicitHeight

    Label {
        id: head
        text: qsTr("Premier pas")
        color: Theme.inkFaint
        font.weight: Font.DemiBold
        wrapMode: Text.NoWrap
    }
    Label {
        id: cut
        x: head.implicitWidth + 10
        width: parent.width - x
        visible: !step.selectable
        maximumLineCount: step.lines
        elide: Text.ElideRight
        text: step.selectable ? "" : step.text
        color: Theme.inkSoft
    }
    Loader {
        id: whole
        x: cut.x
        width: cut.width
        active: step.selectable
        sourceComponent: SelectableText {
            text: step.text
            color: Theme.inkSoft
        }
    }
}
