import QtQuick
import Vorle

// A key and what it does, in one quiet line that can be pressed too.
Press {
    id: hint

    implicitWidth: line.implicitWidth + 20
    implicitHeight: Theme.grown(32)
    Accessible.role: Accessible.Button
    Accessible.name: text
    Accessible.description: qsTr("Touche %1").arg(keys)
    Accessible.onPressAction: clicked()

    Rectangle {
        anchors.fill: parent
        radius: Theme.radiusButton
        color: hint.down ? Theme.sunken : hint.hovered ? Theme.hover : "transparent"

        FocusRing {
            radius: parent.radius + 3
            shown: hint.visualFocus
        }
    }
    Row {
        id: line
        anchors.centerIn: parent
        spacing: 9

        KeyCap {
            keys: hint.keys
            anchors.verticalCenter: parent.verticalCenter
        }
        Text {
            text: hint.text
            color: hint.hovered ? Theme.ink : Theme.inkSoft
            font.family: Theme.textFamily
            font.pixelSize: Theme.textNote
            textFormat: Text.PlainText
            anchors.verticalCenter: parent.verticalCenter
            Accessible.ignored: true
        }
    }
}
