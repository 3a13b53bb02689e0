import QtQuick
import Vorle

// Text in the reading face. Screens choose size and strength of ink, nothing else.
Text {
    font.family: Theme.textFamily
    font.pixelSize: Theme.textBody
    color: Theme.ink
    lineHeight: Theme.leading
    textFormat: Text.PlainText
    wrapMode: Text.Wrap
    Accessible.role: Accessible.StaticText
    Accessible.name: text
    Accessible.ignored: text.length === 0
}
