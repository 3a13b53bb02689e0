import QtQuick
import Vorle

// One part of the reading notes.
Column {
    id: part

    required property string title
    required property string body
    property bool strong: false
    property bool code: false // kept as it is, to be copied

    spacing: part.code ? 8 : 4

    SelectableText {
        width: parent.width
        visible: text.length > 0
        words: part.title
        font.weight: Font.DemiBold
        font.pixelSize: part.strong ? Theme.textLarge : Theme.textMenu
    }
    SelectableText {
        width: parent.width
        visible: !part.code && text.length > 0
        words: part.code ? "" : part.body
        color: Theme.inkSoft
        font.pixelSize: part.strong ? Theme.textLarge : Theme.textMenu
        leading: 1.45
    }
    Loader {
        width: parent.width
        active: part.code
        visible: active
        sourceComponent: CodeBlock {
            code: part.body
        }
    }
}
