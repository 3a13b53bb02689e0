import QtQuick
import Vorle

// The first concrete action, on a strip; its name stands in the column that "Pourquoi toi" has. A
// command that it quotes is set as code, and copied by one press.
Rectangle {
    id: step

    property string text: ""
    property int lines: 100000 // at most
    property bool selectable: false // to be taken along
    readonly property bool narrow: width < 3 * Theme.labelColumn + 60 // the name stands over it
    readonly property real edge: 11
    readonly property bool quotes: parts.command.length > 0
    readonly property real line: Theme.scaled(22)

    visible: text.length > 0
    implicitHeight: Math.max(Theme.grown(44), (narrow ? head.lineHeight : 0) + words.height + 2 * edge)
    radius: Theme.radiusButton
    color: Theme.sunken

    StepText {
        id: parts
        text: step.text
    }
    CardText {
        id: head
        x: 16
        y: step.narrow ? step.edge + 2 : words.y + 1
        width: Theme.labelColumn
        text: qsTr("Premier pas")
        font: Theme.noteFontDemi
        lineHeight: Theme.scaled(21)
        fontSizeMode: Text.HorizontalFit
        minimumPixelSize: 9
    }
    Item {
        id: words

        readonly property SelectableText whole: laidOut.item as SelectableText

        x: 16 + (step.narrow ? 0 : Theme.labelColumn + 14)
        y: step.narrow ? step.edge + 1 + head.lineHeight : height > step.line ? step.edge + 1 : Math.max(step.edge + 1, (step.height - height) / 2)
        width: parent.width - x - (copy.active ? copy.width + 18 : 14)
        height: whole !== null ? Math.min(whole.lineCount, step.lines) * step.line : cut.implicitHeight
        clip: more.active

        CardText {
            id: cut
            width: parent.width
            visible: !laidOut.active
            maximumLineCount: step.lines
            elide: Text.ElideRight
            wrapMode: Text.Wrap
            text: visible ? step.text : ""
            font: Theme.bodyFont
            lineHeight: step.line
        }
        // A card without a command is spared it.
        Loader {
            id: laidOut
            y: -Math.round(0.14 * step.line) // such a line has its room above its letters
            width: parent.width
            active: step.selectable || step.quotes
            sourceComponent: SelectableText {
                enabled: step.selectable // on a card, a click is the card's
                words: parts.before + parts.command + parts.after
                code: parts.command
                codeAt: parts.before.length
                line: step.line
                color: Theme.inkSoft
                Accessible.name: step.text
            }
        }
        // Where such a text goes on below the last line that is shown.
        Loader {
            id: more
            active: words.whole !== null && words.whole.lineCount > step.lines
            sourceComponent: Rectangle {
                x: words.width - width
                y: (step.lines - 1) * step.line
                width: dots.implicitWidth + 10
                height: step.line
                color: step.color

                CardText {
                    id: dots
                    x: 5
                    text: "…"
                    font: Theme.bodyFont
                    lineHeight: step.line
                    Accessible.ignored: true
                }
            }
        }
    }
    Loader {
        id: copy
        anchors.right: parent.right
        anchors.rightMargin: 6
        y: step.narrow || step.implicitHeight > Theme.grown(52) ? 6 : (parent.height - height) / 2
        active: step.quotes
        visible: !more.active // nothing is copied that is not seen
        sourceComponent: CopyButton {
            copied: parts.command
        }
    }
}
