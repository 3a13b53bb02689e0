import QtQuick
import Vorle

// The days of the week on which a run starts by itself, Monday first: a single stop for the Tab
// key, the arrows walk, the space bar takes a day in or out.
Item {
    id: picker

    required property string name
    required property list<int> days // Sunday 1 to Saturday 7

    signal picked(var days) // as `days`

    readonly property list<string> names: [qsTr("lundi"), qsTr("mardi"), qsTr("mercredi"), qsTr("jeudi"), qsTr("vendredi"), qsTr("samedi"), qsTr("dimanche")]
    property int at: 0 // where the arrows are

    function numberOf(index: int): int {
        return (index + 1) % 7 + 1;
    }
    function has(day: int): bool {
        for (let i = 0; i < days.length; ++i) {
            if (days[i] === day) {
                return true;
            }
        }
        return false;
    }
    function toggle(index: int) {
        const day = numberOf(index);
        const next = [];
        for (let each = 1; each <= 7; ++each) {
            if (has(each) !== (each === day)) {
                next.push(each);
            }
        }
        at = index;
        picked(next);
    }
    function walk(to: int) {
        if (to >= 0 && to < names.length) {
            (discs.itemAt(to) as Item).forceActiveFocus(Qt.TabFocusReason);
        }
    }
    function takeFocus() {
        (discs.itemAt(at) as Item).forceActiveFocus(Qt.TabFocusReason);
    }

    implicitWidth: row.implicitWidth
    implicitHeight: row.implicitHeight
    Accessible.role: Accessible.Grouping
    Accessible.name: name

    Row {
        id: row
        spacing: 4

        Repeater {
            id: discs
            model: picker.names

            Rectangle {
                id: disc
                required property int index
                required property string modelData
                readonly property bool on: picker.has(picker.numberOf(index))

                width: Math.max(36, Theme.textNote + 22)
                height: width
                radius: width / 2
                color: on ? Theme.ink : "transparent"
                border.width: on ? 0 : 1
                border.color: hover.hovered ? Theme.inkFaint : Theme.line
                activeFocusOnTab: index === picker.at || activeFocus
                Accessible.role: Accessible.CheckBox
                Accessible.name: modelData
                Accessible.checkable: true
                Accessible.checked: on
                Accessible.focusable: true
                Accessible.focused: activeFocus
                Accessible.onPressAction: picker.toggle(index)
                Accessible.onToggleAction: picker.toggle(index)
                Keys.onLeftPressed: picker.walk(index - 1)
                Keys.onRightPressed: picker.walk(index + 1)
                Keys.onSpacePressed: event => event.isAutoRepeat || picker.toggle(index)
                onActiveFocusChanged: if (activeFocus) picker.at = index

                TapHandler {
                    onTapped: picker.toggle(disc.index)
                }
                HoverHandler {
                    id: hover
                }
                FocusRing {
                    radius: width / 2
                    shown: disc.activeFocus
                }
                Label {
                    anchors.centerIn: parent
                    text: disc.modelData.charAt(0).toUpperCase()
                    color: disc.on ? Theme.paper : Theme.inkSoft
                    font.pixelSize: Theme.textNote
                    font.weight: Font.DemiBold
                    lineHeight: 1
                    Accessible.ignored: true
                }
            }
        }
    }
}
