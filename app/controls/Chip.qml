import QtQuick
import Vorle

// What a topic belongs to, on the accent's tint.
Rectangle {
    id: chip

    required property string text

    implicitWidth: Math.min(words.implicitWidth + 18, 220)
    implicitHeight: words.implicitHeight + 7
    radius: height / 2
    color: Theme.accentTint
    visible: text.length > 0

    Text {
        id: words
        anchors.centerIn: parent
        width: Math.min(implicitWidth, chip.width - 18)
        text: chip.text
        elide: Text.ElideRight
        color: Theme.tintInk
        font.family: Theme.textFamily
        font.pixelSize: Theme.textSmall
        font.weight: Font.DemiBold
        textFormat: Text.PlainText
        Accessible.role: Accessible.StaticText
        Accessible.name: text
    }
}
