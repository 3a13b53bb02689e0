import QtQuick
import Vorle

// The page that quick capture proposes, and the way to another.
Rectangle {
    id: card

    required property QuickCapture capture

    signal otherAsked

    implicitHeight: Math.max(words.implicitHeight, other.implicitHeight) + 24
    radius: Theme.radiusButton
    color: Theme.card
    border.width: 1
    border.color: Theme.line
    Accessible.role: Accessible.Grouping
    Accessible.name: capture.pageTitle
    Accessible.description: capture.pageLine

    LetterTile {
        id: tile
        x: 14
        anchors.verticalCenter: parent.verticalCenter
        size: 38
        letter: card.capture.pageTitle.charAt(0).toUpperCase()
        seed: card.capture.pageTitle
    }
    Column {
        id: words
        anchors.left: tile.right
        anchors.leftMargin: 14
        anchors.right: other.left
        anchors.rightMargin: 8
        anchors.verticalCenter: parent.verticalCenter
        spacing: 2

        Label {
            width: parent.width
            text: card.capture.pageTitle
            font.weight: Font.DemiBold
            wrapMode: Text.NoWrap
            elide: Text.ElideRight
            Accessible.ignored: true
        }
        Label {
            width: parent.width
            text: card.capture.pageLine
            color: Theme.inkSoft
            font.pixelSize: Theme.textNote
            wrapMode: Text.NoWrap
            elide: Text.ElideMiddle
            Accessible.ignored: true
        }
    }
    ActionButton {
        id: other
        anchors.right: parent.right
        anchors.rightMargin: 8
        anchors.verticalCenter: parent.verticalCenter
        quiet: true
        text: qsTr("Changer")
        Accessible.name: qsTr("Donner un autre lien")
        onClicked: card.otherAsked()
    }
}
