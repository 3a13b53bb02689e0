import QtQuick
import Vorle

// A key combination, and the field that records another: what is pressed in it is the combination.
Row {
    id: field

    required property string name
    required property CaptureShortcut shortcut

    function takeFocus() {
        change.forceActiveFocus(Qt.TabFocusReason);
    }

    spacing: 8

    Rectangle {
        id: cap
        implicitWidth: Math.max(field.shortcut.recording ? 170 : 76, words.implicitWidth + 28)
        implicitHeight: Math.max(34, Theme.textBody + 20)
        anchors.verticalCenter: parent.verticalCenter
        radius: 11
        color: Theme.sunken
        border.width: field.shortcut.recording ? 2 : 1
        border.color: field.shortcut.recording ? Theme.accent : Theme.line
        activeFocusOnTab: field.shortcut.recording || activeFocus
        Accessible.role: Accessible.EditableText
        Accessible.name: field.name
        Accessible.description: words.text
        Accessible.focusable: true
        Accessible.focused: activeFocus
        // The keyboard went elsewhere by a click: what was to be pressed there is no combination.
        onActiveFocusChanged: if (!activeFocus) field.shortcut.leave()

        TapHandler {
            onTapped: change.clicked()
        }
        Label {
            id: words
            anchors.centerIn: parent
            text: field.shortcut.recording ? qsTr("Tape ton raccourci…") : field.shortcut.text
            color: field.shortcut.recording ? Theme.inkSoft : Theme.ink
            wrapMode: Text.NoWrap
            lineHeight: 1
            Accessible.ignored: true
        }
    }
    ActionButton {
        id: change
        anchors.verticalCenter: parent.verticalCenter
        text: field.shortcut.recording ? qsTr("Laisser") : qsTr("Changer")
        Accessible.name: field.shortcut.recording ? qsTr("Garder le raccourci") : qsTr("Changer le raccourci")
        onClicked: {
            if (field.shortcut.recording) {
                field.shortcut.leave();
            } else {
                cap.forceActiveFocus(Qt.OtherFocusReason);
                field.shortcut.record();
            }
        }
    }
    Connections {
        target: field.shortcut

        function onRecorded() {
            field.takeFocus();
        }
    }
    Connections {
        target: field.Window.window

        function onActiveChanged() {
            if (!field.Window.active) {
                field.shortcut.leave();
            }
        }
    }
    onVisibleChanged: if (!visible) shortcut.leave()
    Component.onDestruction: shortcut.leave()
}
