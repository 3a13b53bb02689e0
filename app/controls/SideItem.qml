import QtQuick
import QtQuick.Templates as T
import Vorle

// One section in the side bar, with what waits in it.
T.AbstractButton {
    id: item

    property int count: 0
    property bool current: false
    property bool strong: false // the count is what asks for attention
    property string keys: ""

    implicitHeight: 46
    hoverEnabled: true
    Accessible.role: Accessible.PageTab
    Accessible.name: count > 0 ? qsTr("%1, %2").arg(text).arg(count) : text
    Accessible.selected: current
    Accessible.onPressAction: clicked()

    background: Rectangle {
        radius: Theme.radiusButton
        color: item.current ? (Theme.dark ? Theme.raised : Theme.card) : item.hovered ? Theme.sunken : "transparent"
        border.width: item.current ? 1 : 0
        border.color: Theme.line

        Rectangle {
            visible: item.current
            anchors.left: parent.left
            anchors.verticalCenter: parent.verticalCenter
            width: 3
            height: 18
            radius: 1.5
            color: Theme.accent
        }
        FocusRing {
            radius: parent.radius + 3
            shown: item.visualFocus
        }
    }
    contentItem: Item {
        Text {
            anchors.left: parent.left
            anchors.leftMargin: 18
            anchors.verticalCenter: parent.verticalCenter
            text: item.text
            color: item.current ? Theme.ink : Theme.inkSoft
            font.family: Theme.textFamily
            font.pixelSize: Theme.textBody + 1
            font.weight: item.current ? Font.DemiBold : Font.Medium
            textFormat: Text.PlainText
            Accessible.ignored: true
        }
        Text {
            anchors.right: parent.right
            anchors.rightMargin: 18
            anchors.verticalCenter: parent.verticalCenter
            text: item.count > 0 ? item.count : ""
            color: item.strong && item.count > 0 ? Theme.accent : Theme.inkFaint
            font.family: Theme.displayFamily
            font.pixelSize: Theme.textBody + 1
            font.weight: Font.Bold
            textFormat: Text.PlainText
            Accessible.ignored: true
        }
    }
}
