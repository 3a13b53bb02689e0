import QtQuick
import Vorle

// Titles, digits and section names: the display face, set tight.
Text {
    property int size: Theme.titleCard

    font.family: Theme.displayFamily
    font.pixelSize: size
    font.weight: Font.Bold
    font.letterSpacing: -0.012 * size
    color: Theme.ink
    lineHeight: 1.15
    textFormat: Text.PlainText
    wrapMode: Text.Wrap
    Accessible.role: Accessible.Heading
    Accessible.name: text
    Accessible.ignored: text.length === 0
}
