import QtQuick
import Vorle

// A figure in large digits over what it counts.
Column {
    id: figure

    required property string value
    required property string label
    property bool rightwards: false

    spacing: 0
    Accessible.role: Accessible.StaticText
    Accessible.name: value + " " + label

    Title {
        anchors.right: figure.rightwards ? parent.right : undefined
        text: figure.value
        size: Theme.titleScreen
        wrapMode: Text.NoWrap
        Accessible.ignored: true
    }
    Label {
        anchors.right: figure.rightwards ? parent.right : undefined
        text: figure.label
        color: Theme.inkFaint
        font.pixelSize: Theme.textNote
        wrapMode: Text.NoWrap
        Accessible.ignored: true
    }
}
