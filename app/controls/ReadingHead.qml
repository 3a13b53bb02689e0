import QtQuick
import Vorle

// The way back from the reading page, and to the topics beside it.
Item {
    id: head

    required property string section
    required property int position // among `count` topics, from 0
    required property int count
    property string backKeys: ""
    property string forthKeys: ""

    signal closed
    signal moved(int step)

    function grouped(number: int): string {
        return number.toLocaleString(Qt.locale("fr_FR"), "f", 0);
    }

    implicitHeight: Theme.grown(52)

    ActionButton {
        x: Theme.margin - leftPadding
        anchors.verticalCenter: parent.verticalCenter
        quiet: true
        text: "‹ " + head.section
        keys: qsTr("Échap")
        Accessible.name: qsTr("Réduire")
        onClicked: head.closed()
    }
    Row {
        anchors.right: parent.right
        anchors.rightMargin: Theme.margin - 8
        anchors.verticalCenter: parent.verticalCenter
        spacing: 2

        Label {
            anchors.verticalCenter: parent.verticalCenter
            rightPadding: 8
            text: qsTr("%1 / %2").arg(head.grouped(head.position + 1)).arg(head.grouped(head.count))
            color: Theme.inkFaint
            font.pixelSize: Theme.textNote
            wrapMode: Text.NoWrap
            lineHeight: 1.1
            Accessible.name: qsTr("Sujet %1 sur %2").arg(head.grouped(head.position + 1)).arg(head.grouped(head.count))
        }
        ActionButton {
            quiet: true
            text: qsTr("Précédent")
            keys: head.width < 680 ? "" : head.backKeys
            usable: head.position > 0
            onClicked: head.moved(-1)
        }
        ActionButton {
            quiet: true
            text: qsTr("Suivant")
            keys: head.width < 680 ? "" : head.forthKeys
            usable: head.position + 1 < head.count
            onClicked: head.moved(1)
        }
    }
}
