import QtQuick
import Vorle

// Why it matters to this person, behind a stroke of the accent; its name stands in a column that
// the first step shares.
Item {
    id: why

    property string text: ""
    property int lines: 100000 // at most
    property bool selectable: false // whole, and to be taken along
    readonly property bool narrow: width < 3 * Theme.labelColumn + 60 // the name stands over it

    visible: text.length > 0
    implicitHeight: cut.y + (selectable ? whole.implicitHeight : cut.implicitHeight)

    Rectangle {
        width: 3
        radius: 1.5
        y: 2
        height: parent.height - 4
        color: Theme.accent
    }
    CardText {
        id: head
        x: 16
        y: 1
        width: Theme.labelColumn
        text: qsTr("Pourquoi toi")
        font: Theme.noteFontDemi
        lineHeight: Theme.scaled(21)
        fontSizeMode: Text.HorizontalFit
        minimumPixelSize: 9
    }
    CardText {
        id: cut
        x: 16 + (why.narrow ? 0 : Theme.labelColumn + 14)
        y: why.narrow ? head.lineHeight : 0
        width: parent.width - x
        visible: !why.selectable
        maximumLineCount: why.lines
        elide: Text.ElideRight
        wrapMode: Text.Wrap
        text: why.selectable ? "" : why.text
        color: Theme.ink
        font: Theme.cardFontMedium
        lineHeight: Theme.scaled(22)
    }
    Loader {
        id: whole
        x: cut.x
        y: cut.y
        width: cut.width
        active: why.selectable
        // Not the text itself: a loader asks for the width its item would like, and the text would
        // be laid out for that too.
        sourceComponent: Item {
            implicitHeight: said.implicitHeight

            SelectableText {
                id: said
                width: parent.width
                words: why.text
                font.pixelSize: Theme.textCard
                font.weight: Font.Medium
            }
        }
    }
}
