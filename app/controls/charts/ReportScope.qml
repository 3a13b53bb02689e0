import QtQuick
import Vorle
import Vorle.Models

// What one search of a run brought.
Item {
    id: scope

    required property reportLine modelData

    implicitHeight: Math.max(name.implicitHeight, words.implicitHeight)

    Label {
        id: name
        width: Theme.grown(214)
        text: scope.modelData.name
        color: Theme.inkSoft
        font.pixelSize: Theme.textNote
        elide: Text.ElideRight
        wrapMode: Text.NoWrap
    }
    Label {
        id: words
        x: 224
        width: (scope.modelData.failed ? parent.width : 320) - x
        text: scope.modelData.text
        color: scope.modelData.failed ? Theme.tintInk : Theme.inkSoft
        font.pixelSize: Theme.textNote
    }
    Label {
        x: 330
        width: parent.width - x
        visible: text.length > 0 && !scope.modelData.failed
        text: scope.modelData.remark
        color: Theme.inkFaint
        font.pixelSize: Theme.textNote
    }
}
