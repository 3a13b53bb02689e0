import QtQuick
import Vorle

// A name in a list of names; ⌫ takes it away.
FocusScope {
    id: pill

    required property string name
    property string tile: "" // a letter before it
    property string icon: "" // an app's, in the letter's place
    property bool stop: false // the Tab key stops here
    property bool removable: true

    signal removed
    signal stepped(int by)

    function takeFocus() {
        forceActiveFocus(Qt.TabFocusReason);
    }

    implicitWidth: Math.min(content.implicitWidth + (removable ? 16 : 26), 320)
    implicitHeight: 30
    activeFocusOnTab: stop
    Accessible.role: Accessible.ListItem
    Accessible.name: name
    Accessible.focusable: true
    Accessible.focused: activeFocus
    Keys.onPressed: event => {
        event.accepted = !(event.modifiers & ~Qt.KeypadModifier);
        if (!event.accepted) {
            return;
        }
        if (event.key === Qt.Key_Left || event.key === Qt.Key_Up) {
            pill.stepped(-1);
        } else if (event.key === Qt.Key_Right || event.key === Qt.Key_Down) {
            pill.stepped(1);
        } else if (pill.removable && (event.key === Qt.Key_Delete || event.key === Qt.Key_Backspace)) {
            pill.removed();
        } else {
            event.accepted = false;
        }
    }

    Rectangle {
        anchors.fill: parent
        radius: height / 2
        color: Theme.card
        border.width: 1
        border.color: hover.hovered ? Theme.edge : Theme.line
    }
    FocusRing {
        radius: height / 2
        shown: pill.activeFocus
    }
    HoverHandler {
        id: hover
    }
    Row {
        id: content
        x: 12
        height: parent.height
        spacing: 4

        AppTile {
            visible: pill.tile.length > 0
            size: 18
            letter: pill.tile
            seed: pill.name
            icon: pill.icon
            anchors.verticalCenter: parent.verticalCenter
        }
        Label {
            leftPadding: pill.tile.length > 0 ? 4 : 0
            width: Math.min(implicitWidth, 320 - 48)
            anchors.verticalCenter: parent.verticalCenter
            text: pill.name
            font.weight: Font.Medium
            font.pixelSize: Theme.textNote
            wrapMode: Text.NoWrap
            elide: Text.ElideRight
            lineHeight: 1
            Accessible.ignored: true
        }
        CrossButton {
            visible: pill.removable
            anchors.verticalCenter: parent.verticalCenter
            what: pill.name
            onClicked: pill.removed()
        }
    }
}
