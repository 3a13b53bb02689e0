import QtQuick
import Vorle
import Vorle.Models

// One thing a version changes, with what sort of change it is.
Item {
    id: change

    required property namedText modelData
    property bool first: false // no line parts it from what stands above

    implicitHeight: Math.max(Theme.grown(44), words.implicitHeight + 22)

    Rectangle {
        width: parent.width
        height: 1
        color: Theme.line
        visible: !change.first
    }
    SelectableText {
        id: words
        width: parent.width - (label.visible ? label.width + 16 : 0)
        anchors.verticalCenter: parent.verticalCenter
        words: change.modelData.text
        font.pixelSize: Theme.textMenu
        leading: 1.4
    }
    Chip {
        id: label
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        text: change.modelData.name
    }
}
