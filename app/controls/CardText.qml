import QtQuick
import Vorle

// A text of a card, in lines of a given height, whatever script it is written in. Its font is set as
// a whole, and as one of the theme's: there are dozens of these in a list.
Text {
    color: Theme.inkSoft
    textFormat: Text.PlainText
    lineHeightMode: Text.FixedHeight
    Accessible.role: Accessible.StaticText
    Accessible.name: text
    Accessible.ignored: text.length === 0
}
