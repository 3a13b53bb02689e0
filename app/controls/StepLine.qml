import QtQuick
import Vorle

// The first concrete action, on a strip; its name stands in the column that "Pourquoi toi" has. A
// command that it quotes is set as code, and copied by one press.
Rectangle {
    id: step

    property string text: ""
    property int lines: 100000 // at most
    property bool selectable: false // whole, and to be taken along
    readonly property bool narrow: width < 3 * Theme.labelColumn + 60 // the name stands over it
    readonly property real edge: 11
    readonly property bool quotes: parts.command.length > 0
    readonly property bool onOneLine: quotes && apart.implicitWidth <= cut.width

    visible: text.length > 0
    implicitHeight: Math.max(Theme.grown(44), cut.y + edge - 1 + (onOneLine ? apart.implicitHeight : selectable ? whole.implicitHeight : cut.implicitHeight))
    radius: Theme.radiusButton
    color: Theme.sunken

    StepText {
        id: parts
        text: step.text
    }
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
        width: parent.width - x - (copy.active ? copy.width + 18 : 14)
        visible: !step.selectable && !step.onOneLine
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
        visible: !step.onOneLine
        sourceComponent: SelectableText {
            text: step.text
            code: parts.command
            color: Theme.inkSoft
        }
    }
    // Words, command, words; where they take more than a line they run on as one text.
    Row {
        id: apart
        x: cut.x
        y: cut.y
        opacity: step.onOneLine ? 1 : 0 // it is measured either way
        Accessible.role: Accessible.StaticText
        Accessible.name: step.text
        Accessible.ignored: !step.onOneLine

        Repeater {
            model: step.quotes ? [parts.before, parts.command, parts.after] : []

            SelectableText {
                required property int index
                required property string modelData
                enabled: step.selectable // on a card, a click is the card's
                text: modelData
                visible: text.length > 0
                wrapMode: TextEdit.NoWrap
                color: index === 1 ? Theme.ink : Theme.inkSoft
                font.family: index === 1 ? Theme.codeFamily : Theme.textFamily
                font.pixelSize: index === 1 ? Theme.textNote : Theme.textBody
                leading: index === 1 ? 1.45 : 1.35
                Accessible.ignored: true
            }
        }
    }
    Loader {
        id: copy
        anchors.right: parent.right
        anchors.rightMargin: 6
        y: step.narrow || step.implicitHeight > Theme.grown(52) ? 6 : (parent.height - height) / 2
        active: step.quotes
        sourceComponent: CopyButton {
            copied: parts.command
        }
    }
}
