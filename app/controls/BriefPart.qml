import QtQuick
import Vorle

// One part of the reading notes.
Column {
    id: part

    required property string title
    required property string body
    property bool strong: false

    spacing: 4

    Label {
        width: parent.width
        visible: text.length > 0
        text: part.title
        font.weight: Font.DemiBold
        font.pixelSize: part.strong ? Theme.textLarge : Theme.textBody
    }
    Label {
        width: parent.width
        text: part.body
        color: Theme.inkSoft
        font.pixelSize: part.strong ? Theme.textLarge : Theme.textBody
        lineHeight: 1.45
    }
}
