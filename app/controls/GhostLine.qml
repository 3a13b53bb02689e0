import QtQuick
import Vorle

// Where the decided topic went, in the place it left.
Rectangle {
    id: ghost

    required property string went
    required property string title
    property string undoKeys: ""

    signal undo

    implicitHeight: Theme.grown(44)
    radius: Theme.radiusCard - 4
    color: "transparent"
    border.width: 1
    border.color: Theme.line
    Accessible.role: Accessible.AlertMessage
    Accessible.name: went + ", " + title

    Row {
        anchors.left: parent.left
        anchors.leftMargin: Theme.cardPadding
        anchors.right: keys.left
        anchors.rightMargin: 12
        anchors.verticalCenter: parent.verticalCenter
        spacing: 10

        Text {
            id: tick
            text: "✓"
            color: Theme.accent
            font.pixelSize: Theme.textBody
            font.weight: Font.Bold
            Accessible.ignored: true
        }
        Text {
            id: where
            text: ghost.went
            color: Theme.inkSoft
            font.family: Theme.textFamily
            font.pixelSize: Theme.textBody
            font.weight: Font.DemiBold
            textFormat: Text.PlainText
            Accessible.ignored: true
        }
        Text {
            width: Math.max(0, parent.width - tick.width - where.width - 20)
            text: ghost.title
            elide: Text.ElideRight
            color: Theme.inkFaint
            font.family: Theme.textFamily
            font.pixelSize: Theme.textBody
            textFormat: Text.PlainText
            Accessible.ignored: true
        }
    }
    ActionButton {
        id: keys
        anchors.right: parent.right
        anchors.rightMargin: 8
        anchors.verticalCenter: parent.verticalCenter
        quiet: true
        focusPolicy: Qt.NoFocus
        keys: ghost.undoKeys
        text: ""
        Accessible.name: qsTr("Annuler")
        onClicked: ghost.undo()
    }
}
