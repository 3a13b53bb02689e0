import QtQuick
import Vorle

// One choice among a few: a single stop for the Tab key, the arrows choose.
Item {
    id: group

    required property string name
    required property var labels // the words shown
    property int chosen: -1 // none
    property var dots: [] // a colour before each label
    property bool tight: false // where there is little room
    property bool upDown: true // these arrows choose too; else they are left to what it stands in

    signal picked(int index)
    signal entered(int index) // ↩ on it, once it was picked

    property bool moving: false // once it was chosen from here

    // The keyboard goes to what is chosen.
    function takeFocus() {
        (options.itemAt(Math.max(0, chosen)) as Item).forceActiveFocus(Qt.TabFocusReason);
    }
    function pick(index: int) {
        moving = true;
        picked(index);
    }
    function step(from: int, by: int): bool {
        const to = (from + by + labels.length) % labels.length;
        (options.itemAt(to) as Item).forceActiveFocus(Qt.TabFocusReason);
        pick(to);
        return true;
    }

    implicitWidth: row.implicitWidth + 6
    implicitHeight: Math.max(34, Theme.textBody + 20)
    Accessible.role: Accessible.Grouping // without a name: each choice has it

    Rectangle {
        anchors.fill: parent
        radius: 10
        color: Theme.well
    }
    Rectangle {
        readonly property Item under: group.chosen < 0 ? null : options.count > 0 ? options.itemAt(group.chosen) : null // made by then

        visible: under !== null
        x: 3 + (under?.x ?? 0)
        y: 3
        width: under?.width ?? 0
        height: parent.height - 6
        radius: 7
        color: Theme.segment
        border.width: 1
        border.color: Theme.line

        Behavior on x {
            enabled: group.moving
            NumberAnimation {
                duration: Theme.quick
                easing.type: Easing.OutCubic
            }
        }
        Behavior on width {
            enabled: group.moving
            NumberAnimation {
                duration: Theme.quick
                easing.type: Easing.OutCubic
            }
        }
    }
    Row {
        id: row
        x: 3
        y: 3
        height: parent.height - 6

        Repeater {
            id: options
            model: group.labels

            Item {
                id: option
                required property int index
                required property string modelData
                readonly property bool on: index === group.chosen

                implicitWidth: content.implicitWidth + (group.tight ? 12 : 28)
                height: row.height
                activeFocusOnTab: on || (group.chosen < 0 && index === 0)
                Accessible.role: Accessible.RadioButton
                Accessible.name: qsTr("%1 : %2").arg(group.name).arg(modelData)
                Accessible.checkable: true
                Accessible.checked: on
                Accessible.focusable: true
                Accessible.focused: activeFocus
                Accessible.onPressAction: group.pick(index)
                Accessible.onToggleAction: group.pick(index)
                Keys.onLeftPressed: group.step(index, -1)
                Keys.onUpPressed: event => event.accepted = group.upDown && group.step(index, -1)
                Keys.onRightPressed: group.step(index, 1)
                Keys.onDownPressed: event => event.accepted = group.upDown && group.step(index, 1)
                Keys.onSpacePressed: group.pick(index)
                Keys.onReturnPressed: {
                    group.pick(index);
                    group.entered(index);
                }

                TapHandler {
                    onTapped: group.pick(option.index)
                }
                HoverHandler {
                    id: hover
                }
                FocusRing {
                    radius: 9
                    shown: option.activeFocus
                }
                Row {
                    id: content
                    anchors.centerIn: parent
                    spacing: 8

                    Rectangle {
                        visible: group.dots.length > 0
                        width: 12
                        height: 12
                        radius: 6
                        anchors.verticalCenter: parent.verticalCenter
                        color: group.dots[option.index] ?? "transparent"
                    }
                    Label {
                        text: option.modelData
                        font.pixelSize: group.tight ? Theme.textNote : Theme.textBody
                        color: option.on || hover.hovered ? Theme.ink : Theme.inkSoft
                        font.weight: option.on ? Font.DemiBold : Font.Medium
                        wrapMode: Text.NoWrap
                        lineHeight: 1
                        anchors.verticalCenter: parent.verticalCenter
                        Accessible.ignored: true
                    }
                }
            }
        }
    }
}
