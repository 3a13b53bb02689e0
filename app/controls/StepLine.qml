import QtQuick
import Vorle

// The first concrete action, on a strip; its name stands in the column that "Pourquoi toi" has.
Rectangle {
    id: step

    property string text: ""
    property int lines: 100000 // at most
    property bool selectable: false // whole, and to be taken along
    readonly property bool narrow: width < 3 * Theme.labelColumn + 60 // the name stands over it
    readonly property real edge: 11

    visible: text.length > 0
    implicitHeight: Math.max(Theme.grown(44), 2 * edge + cut.y - edge + (selectable ? whole.implicitHeight : cut.implicitHeight))
    radius: Theme.radiusButton
    color: Theme.sunken

    Label {
        id: head
        x: 16
        y: step.edge + 2
        width: Theme.labelColumn
        text: qsTr("Premier pas")
        color: Theme.inkSoft
        font.pixelSize: Theme.textNote
        font.weight: Font.DemiBold
        lineHeightMode: Text.FixedHeight
        lineHeight: Theme.scaled(21)
        wrapMode: Text.NoWrap
        fontSizeMode: Text.HorizontalFit
        minimumPixelSize: 9
    }
    Label {
        id: cut
        x: 16 + (step.narrow ? 0 : Theme.labelColumn + 14)
        y: step.edge + 1 + (step.narrow ? head.lineHeight : 0)
        width: parent.width - x - 14
        visible: !step.selectable
        maximumLineCount: step.lines
        elide: Text.ElideRight
        text: step.selectable ? "" : step.text
        color: Theme.inkSoft
        lineHeightMode: Text.FixedHeight
        lineHeight: Theme.scaled(22)
    }
    Loader {
        id: whole
        x: cut.x
        y: cut.y
        width: cut.width
        active: step.selectable
        sourceComponent: SelectableText {
            text: step.text
            color: Theme.inkSoft
        }
    }
}
