import QtQuick
import Vorle

// What was just taken away, and the way back; gone by itself, while the key goes on taking it back.
Rectangle {
    id: line

    property string text: ""
    property string keys: ""

    signal undo

    function show() {
        opacity = 1;
        away.restart();
    }
    function hide() {
        opacity = 0;
    }

    implicitWidth: Math.min(row.implicitWidth + 26, 560)
    implicitHeight: 42
    radius: height / 2
    color: Theme.card
    border.width: 1
    border.color: Theme.edge
    opacity: 0
    visible: opacity > 0 && text.length > 0
    z: 4
    Accessible.role: Accessible.AlertMessage
    Accessible.name: text

    Behavior on opacity {
        NumberAnimation {
            duration: Theme.calm
        }
    }
    Row {
        id: row
        x: 18
        height: parent.height
        spacing: 6

        Label {
            anchors.verticalCenter: parent.verticalCenter
            width: Math.min(implicitWidth, 360)
            text: line.text
            color: Theme.inkSoft
            font.weight: Font.Medium
            wrapMode: Text.NoWrap
            elide: Text.ElideRight
            lineHeight: 1.1
            Accessible.ignored: true
        }
        ActionButton {
            anchors.verticalCenter: parent.verticalCenter
            quiet: true
            implicitHeight: 32
            activeFocusOnTab: false
            text: qsTr("Annuler")
            keys: line.keys
            onClicked: line.undo()
        }
    }
    Timer {
        id: away
        interval: 8000
        onTriggered: line.hide()
    }
}
