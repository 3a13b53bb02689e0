import QtQuick
import Vorle

// Over a demonstration that was opened from the app: what it is, and the way back.
Rectangle {
    id: strip

    signal backAsked

    implicitHeight: 44
    color: Theme.accentTint

    Label {
        x: Theme.margin
        width: parent.width - back.width - 3 * Theme.margin / 2
        anchors.verticalCenter: parent.verticalCenter
        text: qsTr("C’est une démonstration : rien n’est envoyé, rien n’est gardé.")
        color: Theme.tintInk
        font.weight: Font.DemiBold
        font.pixelSize: Theme.textNote
        elide: Text.ElideRight
        wrapMode: Text.NoWrap
    }
    ActionButton {
        id: back
        anchors.right: parent.right
        anchors.rightMargin: Theme.margin / 2
        anchors.verticalCenter: parent.verticalCenter
        quiet: true
        text: qsTr("Revenir")
        onClicked: strip.backAsked()
    }
}
