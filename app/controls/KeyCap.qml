import QtQuick
import Vorle

// The key that does the same, shown on the control that does it.
Rectangle {
    id: cap

    required property string keys
    property color ink: Theme.inkSoft
    property color fill: Theme.sunken
    property bool bare: false // the glyphs alone, without the cap

    implicitWidth: Math.max(glyphs.implicitWidth + (bare ? 0 : 11), bare ? 0 : 21)
    implicitHeight: Theme.grown(21)
    radius: Theme.radiusKey
    color: bare ? "transparent" : fill
    visible: keys.length > 0
    Accessible.ignored: true

    Text {
        id: glyphs
        anchors.centerIn: parent
        text: cap.keys
        color: cap.ink
        font: Theme.keyFont
        textFormat: Text.PlainText
        Accessible.ignored: true
    }
}
