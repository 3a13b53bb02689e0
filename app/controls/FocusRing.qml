import QtQuick
import Vorle

// Shows where the keyboard is, around the control it is placed in.
Rectangle {
    property bool shown: false

    anchors.fill: parent
    anchors.margins: -3
    visible: shown
    color: "transparent"
    border.color: Theme.accent
    border.width: 2
}
