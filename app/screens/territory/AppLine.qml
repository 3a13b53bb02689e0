import QtQuick
import Vorle
import Vorle.Models

// An app to choose.
Item {
    id: line

    required property int index
    required property appRow row
    property bool current: false

    signal picked

    height: 38
    Accessible.role: Accessible.CheckBox
    Accessible.name: row.shown
    Accessible.description: row.note
    Accessible.checkable: true
    Accessible.checked: row.chosen
    Accessible.focusable: true
    Accessible.focused: current
    Accessible.onPressAction: picked()
    Accessible.onToggleAction: picked()

    Rectangle {
        anchors.fill: parent
        radius: 10
        visible: line.current || hover.hovered
        color: Theme.well
    }
    HoverHandler {
        id: hover
    }
    TapHandler {
        onTapped: line.picked()
    }
    AppTile {
        x: 10
        size: 22
        anchors.verticalCenter: parent.verticalCenter
        letter: line.row.shown.charAt(0).toUpperCase()
        seed: line.row.shown
        icon: line.row.icon
    }
    Label {
        x: 44
        width: note.x - x - 10
        anchors.verticalCenter: parent.verticalCenter
        text: line.row.shown
        font.weight: Font.Medium
        wrapMode: Text.NoWrap
        elide: Text.ElideRight
        lineHeight: 1.2
        Accessible.ignored: true
    }
    Label {
        id: note
        anchors.right: check.left
        anchors.rightMargin: 12
        anchors.verticalCenter: parent.verticalCenter
        text: line.row.note
        color: Theme.inkFaint
        font.pixelSize: Theme.textNote
        wrapMode: Text.NoWrap
        lineHeight: 1.2
        Accessible.ignored: true
    }
    Rectangle {
        id: check
        anchors.right: parent.right
        anchors.rightMargin: 12
        anchors.verticalCenter: parent.verticalCenter
        width: 18
        height: 18
        radius: 5
        color: line.row.chosen ? Theme.ink : "transparent"
        border.width: line.row.chosen ? 0 : 1
        border.color: Theme.inkFaint

        Text {
            anchors.centerIn: parent
            visible: line.row.chosen
            text: "✓"
            color: Theme.paper
            font.pixelSize: Theme.textSmall
            font.weight: Font.Bold
            Accessible.ignored: true
        }
    }
}
