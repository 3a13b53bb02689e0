import QtQuick
import Vorle
import Vorle.Models

// A folder that was found on the machine, and the button that follows it.
Item {
    id: row

    required property foundFolder folder

    signal added

    implicitHeight: 52

    function takeFocus() {
        add.forceActiveFocus(Qt.TabFocusReason);
    }

    Rectangle {
        width: parent.width
        height: 1
        color: Theme.line
    }
    Column {
        width: parent.width - add.width - 12
        anchors.verticalCenter: parent.verticalCenter

        Label {
            width: parent.width
            text: row.folder.name
            font.weight: Font.DemiBold
            wrapMode: Text.NoWrap
            elide: Text.ElideRight
        }
        Label {
            width: parent.width
            text: row.folder.detail
            color: Theme.inkFaint
            font.pixelSize: Theme.textNote
            wrapMode: Text.NoWrap
            elide: Text.ElideRight
        }
    }
    PillButton {
        id: add
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        text: qsTr("+ Suivre")
        Accessible.name: qsTr("Suivre %1").arg(row.folder.name)
        onClicked: row.added()
    }
}
