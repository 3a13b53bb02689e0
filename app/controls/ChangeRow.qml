import QtQuick
import Vorle
import Vorle.Models

// One thing a version changes, with what sort of change it is.
Item {
    id: change

    required property namedText modelData

    implicitHeight: Math.max(words.implicitHeight, label.visible ? label.implicitHeight : 0)

    SelectableText {
        id: words
        width: parent.width - (label.visible ? label.width + 12 : 0)
        text: change.modelData.text
        leading: 1.4
    }
    Chip {
        id: label
        anchors.right: parent.right
        text: change.modelData.name
    }
}
