import QtQuick
import Vorle

// How it goes with reading notes that are not there yet.
Rectangle {
    id: card

    required property string title
    required property string text
    property string more: "" // in the agent's own words
    property string button: "" // what can be done about it; "" for nothing
    property bool busy: false

    signal pressed

    implicitHeight: Math.max(Theme.grown(66), words.implicitHeight + 28)
    radius: 16
    color: Theme.card
    border.width: 1
    border.color: Theme.line

    Mascot {
        id: mascot
        x: 18
        anchors.verticalCenter: parent.verticalCenter
        size: 36
        awake: card.busy
    }
    Column {
        id: words
        x: mascot.x + mascot.width + 16
        width: (act.visible ? act.x : parent.width) - x - 16
        anchors.verticalCenter: parent.verticalCenter
        spacing: 2

        Label {
            width: parent.width
            text: card.title
            font.weight: Font.DemiBold
            lineHeight: 1.2
        }
        Label {
            width: parent.width
            text: card.text
            color: Theme.inkFaint
            font.pixelSize: Theme.textNote
            lineHeight: 1.25
        }
        SelectableText {
            width: parent.width
            visible: text.length > 0
            words: card.more
            color: Theme.tintInk
            font.pixelSize: Theme.textNote
        }
    }
    ActionButton {
        id: act
        visible: card.button.length > 0
        anchors.right: parent.right
        anchors.rightMargin: 15
        anchors.verticalCenter: parent.verticalCenter
        text: card.button
        onClicked: card.pressed()
    }
}
