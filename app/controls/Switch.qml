import QtQuick
import Vorle

// On or off. On is ink, never the accent: that one says where you are and what is due.
Item {
    id: control

    required property string name // what it switches
    property bool on: false

    signal toggled(bool on) // what it is asked to be; it shows what it is told by `on`

    property bool moving: false // once it was switched from here

    function toggle() {
        moving = true;
        toggled(!on);
    }
    function takeFocus() {
        forceActiveFocus(Qt.TabFocusReason);
    }

    implicitWidth: 38
    implicitHeight: 22
    activeFocusOnTab: true
    Accessible.role: Accessible.CheckBox
    Accessible.name: name
    Accessible.checkable: true
    Accessible.checked: on
    Accessible.focusable: true
    Accessible.focused: activeFocus
    Accessible.onPressAction: toggle()
    Accessible.onToggleAction: toggle()
    Keys.onSpacePressed: event => event.isAutoRepeat || toggle()
    Keys.onReturnPressed: event => event.isAutoRepeat || toggle()
    Keys.onEnterPressed: event => event.isAutoRepeat || toggle()

    TapHandler {
        margin: 8
        onTapped: control.toggle()
    }
    HoverHandler {
        id: hover
        margin: 8
    }
    Rectangle {
        anchors.fill: parent
        radius: height / 2
        color: control.on ? Theme.ink : Theme.edge
        border.width: hover.hovered && !control.on ? 1 : 0
        border.color: Theme.inkFaint
    }
    Rectangle {
        x: control.on ? parent.width - width - 3 : 3
        anchors.verticalCenter: parent.verticalCenter
        width: 16
        height: 16
        radius: 8
        color: control.on ? Theme.paper : Theme.segment

        Behavior on x {
            enabled: control.moving
            NumberAnimation {
                duration: Theme.quick
                easing.type: Easing.OutCubic
            }
        }
    }
    FocusRing {
        anchors.margins: -4
        radius: 15
        shown: control.activeFocus
    }
}
