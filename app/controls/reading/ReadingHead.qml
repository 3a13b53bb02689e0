import QtQuick
import Vorle

// The way back from the reading page, and to the topics beside it. Once the topic's own title has
// left the view, it stands here.
Item {
    id: head

    required property string section
    required property int position // among `count` topics, from 0
    required property int count
    property string backKeys: ""
    property string forthKeys: ""
    property string title: "" // "" while the page shows it

    signal closed
    signal moved(int step)

    function grouped(number: int): string {
        return number.toLocaleString(Qt.locale("fr_FR"), "f", 0);
    }

    implicitHeight: Theme.grown(52)

    Rectangle {
        anchors.bottom: parent.bottom
        width: parent.width
        height: 1
        color: Theme.line
        visible: head.title.length > 0
    }
    ActionButton {
        id: back
        x: Theme.margin - leftPadding
        anchors.verticalCenter: parent.verticalCenter
        quiet: true
        font.pixelSize: Theme.textNote
        text: "‹ " + head.section
        keys: qsTr("Échap")
        Accessible.name: qsTr("Réduire")
        onClicked: head.closed()
    }
    Label {
        // Between what stands at both ends, and in the middle where there is room for that.
        readonly property real from: back.x + back.width + 16
        readonly property real to: turns.x - 16
        readonly property real even: Math.min(implicitWidth, 2 * Math.min(head.width / 2 - from, to - head.width / 2))

        x: even >= 200 ? (head.width - even) / 2 : from
        width: even >= 200 ? even : to - from
        anchors.verticalCenter: parent.verticalCenter
        visible: text.length > 0 && width > 80
        text: head.title
        font.weight: Font.DemiBold
        lineHeight: 1
        wrapMode: Text.NoWrap
        elide: Text.ElideRight
        Accessible.ignored: true // the page is named so already
    }
    Row {
        id: turns
        anchors.right: parent.right
        anchors.rightMargin: Theme.margin - 12
        anchors.verticalCenter: parent.verticalCenter

        ActionButton {
            quiet: true
            leftPadding: 12
            text: "‹"
            keysShown: false
            keys: head.backKeys
            usable: head.position > 0
            Accessible.name: qsTr("Sujet précédent")
            onClicked: head.moved(-1)
        }
        Label {
            anchors.verticalCenter: parent.verticalCenter
            text: qsTr("%1 / %2").arg(head.grouped(head.position + 1)).arg(head.grouped(head.count))
            color: Theme.inkSoft
            font.pixelSize: Theme.textNote
            font.weight: Font.Medium
            wrapMode: Text.NoWrap
            lineHeight: 1
            Accessible.name: qsTr("Sujet %1 sur %2").arg(head.grouped(head.position + 1)).arg(head.grouped(head.count))
        }
        ActionButton {
            quiet: true
            leftPadding: 12
            text: "›"
            keysShown: false
            keys: head.forthKeys
            usable: head.position + 1 < head.count
            Accessible.name: qsTr("Sujet suivant")
            onClicked: head.moved(1)
        }
    }
}
