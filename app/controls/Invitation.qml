import QtQuick
import Vorle

// Offers something once, at the head of a section: what, why, and two buttons.
Rectangle {
    id: offer

    property string title: ""
    property string text: ""
    property string action: ""
    property bool brief: false // the title alone

    signal accepted
    signal declined

    implicitHeight: Math.max(words.implicitHeight, buttons.implicitHeight) + (brief ? 20 : 32)
    radius: Theme.radiusCard
    color: Theme.card
    border.width: 1
    border.color: Theme.line
    Accessible.role: Accessible.Grouping
    Accessible.name: title
    Accessible.description: text

    Column {
        id: words
        x: 20
        anchors.verticalCenter: parent.verticalCenter
        width: parent.width - buttons.width - 60
        spacing: 2

        Title {
            width: parent.width
            text: offer.title
            size: Theme.titleSmall
        }
        Label {
            width: parent.width
            visible: !offer.brief
            text: offer.text
            color: Theme.inkSoft
            font.pixelSize: Theme.textBody
        }
    }
    Row {
        id: buttons
        anchors.right: parent.right
        anchors.rightMargin: 16
        anchors.verticalCenter: parent.verticalCenter
        spacing: 6

        ActionButton {
            text: qsTr("Passer")
            quiet: true
            onClicked: offer.declined()
        }
        ActionButton {
            text: offer.action
            primary: true
            onClicked: offer.accepted()
        }
    }
}
