import QtQuick
import Vorle
import Vorle.Models

// A rule that the decisions taught, with the heading of its group over the first. ↩ shows the
// decisions behind it, Espace switches it.
FocusScope {
    id: reflex

    required property int index
    required property reflexRow row
    property bool stop: false // the Tab key stops here

    signal switched(bool on)
    signal opened
    signal stepped(int by)

    function takeFocus() {
        forceActiveFocus(Qt.TabFocusReason);
    }

    implicitHeight: heading.height + Math.max(54, words.implicitHeight + 14)
    activeFocusOnTab: stop
    Accessible.role: Accessible.ListItem
    Accessible.name: row.title
    Accessible.description: row.told
    Accessible.focusable: true
    Accessible.focused: activeFocus
    Accessible.onPressAction: if (!row.sample) opened()
    Keys.onPressed: event => {
        event.accepted = !(event.modifiers & ~Qt.KeypadModifier);
        if (!event.accepted) {
            return;
        }
        if (event.key === Qt.Key_Up || event.key === Qt.Key_Down) {
            reflex.stepped(event.key === Qt.Key_Up ? -1 : 1);
        } else if (!reflex.row.sample && !event.isAutoRepeat && (event.key === Qt.Key_Return || event.key === Qt.Key_Enter)) {
            reflex.opened();
        } else if (!reflex.row.sample && !event.isAutoRepeat && event.key === Qt.Key_Space) {
            reflex.switched(!reflex.row.on);
        } else {
            event.accepted = false;
        }
    }

    Item {
        id: heading
        width: parent.width
        height: reflex.row.heading.length > 0 ? (reflex.index === 0 ? 34 : 46) : 0

        Title {
            anchors.bottom: parent.bottom
            anchors.bottomMargin: 6
            visible: text.length > 0
            text: reflex.row.heading
            size: Theme.textMenu
            color: Theme.inkSoft
        }
    }
    Item {
        id: line
        y: heading.height
        width: parent.width
        height: parent.height - y

        HoverHandler {
            id: hover
        }
        Rectangle {
            anchors.fill: parent
            anchors.leftMargin: -12
            anchors.rightMargin: -12
            radius: 10
            color: Theme.side
            visible: (hover.hovered && !reflex.row.sample) || reflex.activeFocus
        }
        FocusRing {
            radius: 10
            anchors.margins: 1
            anchors.leftMargin: -12
            anchors.rightMargin: -12
            shown: reflex.activeFocus
        }
        Rectangle {
            width: parent.width
            height: 1
            color: Theme.line
            visible: reflex.row.heading.length === 0
        }
        // Not where the switch is.
        Item {
            width: right.x
            height: parent.height

            TapHandler {
                enabled: !reflex.row.sample
                onTapped: reflex.opened()
            }
        }
        Column {
            id: words
            anchors.verticalCenter: parent.verticalCenter
            width: right.x - 16
            spacing: 1

            Label {
                width: parent.width
                text: reflex.row.title
                color: reflex.row.on && !reflex.row.sample ? Theme.ink : Theme.inkFaint
                font.pixelSize: Theme.textLarge
                font.weight: Font.Medium
                lineHeight: 1.2
                Accessible.ignored: true
            }
            Label {
                width: parent.width
                text: reflex.row.evidence
                color: Theme.inkFaint
                font.pixelSize: Theme.textNote
                lineHeight: 1.25
                Accessible.ignored: true
            }
        }
        Row {
            id: right
            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            spacing: 18

            Text {
                anchors.verticalCenter: parent.verticalCenter
                text: reflex.row.effect
                color: reflex.row.on && !reflex.row.sample ? Theme.inkSoft : Theme.inkFaint
                font.family: text.length > 3 ? Theme.textFamily : Theme.displayFamily
                font.pixelSize: text.length > 3 ? Theme.textNote : Theme.textMenu
                font.weight: text.length > 3 ? Font.Medium : Font.Bold
                textFormat: Text.PlainText
                Accessible.ignored: true
            }
            Rectangle {
                visible: reflex.row.sample
                anchors.verticalCenter: parent.verticalCenter
                width: example.implicitWidth + 18
                height: 22
                radius: 11
                color: Theme.well

                Label {
                    id: example
                    anchors.centerIn: parent
                    text: qsTr("exemple")
                    color: Theme.inkSoft
                    font.pixelSize: Theme.textSmall
                    lineHeight: 1
                    Accessible.ignored: true
                }
            }
            Switch {
                visible: !reflex.row.sample
                anchors.verticalCenter: parent.verticalCenter
                name: reflex.row.title
                on: reflex.row.on
                activeFocusOnTab: false
                onToggled: on => reflex.switched(on)
            }
        }
    }
}
