import QtQuick
import Vorle

// How much was found, and the keys that choose.
Item {
    id: foot

    property alias text: count.text

    implicitHeight: Theme.grown(40)

    Rectangle {
        width: parent.width
        height: 1
        color: Theme.line
    }
    Label {
        id: count
        x: 20
        width: hint.visible ? hint.x - 36 : parent.width - 40
        anchors.verticalCenter: parent.verticalCenter
        color: Theme.inkSoft
        font.pixelSize: Theme.textNote
        elide: Text.ElideRight
        wrapMode: Text.NoWrap
        lineHeight: 1
    }
    Label {
        id: hint
        anchors.right: parent.right
        anchors.rightMargin: 20
        anchors.verticalCenter: parent.verticalCenter
        visible: foot.width > Theme.scaled(380)
        text: qsTr("↑ ↓ parcourir   ↩ ouvrir")
        color: Theme.inkFaint
        font.pixelSize: Theme.textSmall
        wrapMode: Text.NoWrap
        lineHeight: 1
        Accessible.ignored: true
    }
}
