import QtQuick
import Vorle

// A line of a card's menu: what it does, and the key that does the same.
Press {
    id: row

    property bool apart: false // a line over it
    property bool pointed: true // by a mouse that moved, not by one that lay there

    readonly property real over: apart ? 9 : 0

    implicitWidth: words.implicitWidth + cap.implicitWidth + 52
    implicitHeight: Theme.grown(34) + over
    Accessible.role: Accessible.MenuItem
    Accessible.name: text
    Accessible.description: keys.length > 0 ? qsTr("Touche %1").arg(keys) : ""
    Accessible.focusable: true
    Accessible.focused: activeFocus
    Accessible.onPressAction: clicked()
    Keys.onReturnPressed: event => press(event)
    Keys.onEnterPressed: event => press(event)
    Keys.onSpacePressed: event => press(event)
    onHoveredChanged: follow()
    onPointedChanged: follow()

    function follow() {
        if (hovered && pointed) {
            forceActiveFocus(Qt.MouseFocusReason);
        }
    }

    // With another key it is a shortcut; of the bar a button would take that for a press too.
    function press(event: KeyEvent) {
        const bare = !(event.modifiers & ~Qt.KeypadModifier);
        event.accepted = bare || event.key === Qt.Key_Space;
        if (bare && !event.isAutoRepeat) {
            clicked();
        }
    }

    Rectangle {
        visible: row.apart
        x: 8
        y: 4
        width: parent.width - 16
        height: 1
        color: Theme.line
    }
    Rectangle {
        y: row.over
        width: parent.width
        height: parent.height - y
        radius: 8
        color: row.down ? Theme.sunken : !row.activeFocus ? "transparent" : Theme.dark ? Theme.line : Theme.hover
    }
    Text {
        id: words
        x: 12
        y: row.over + (parent.height - row.over - height) / 2
        width: parent.width - x - cap.width - 24
        text: row.text
        elide: Text.ElideRight
        color: Theme.ink
        font.family: Theme.textFamily
        font.pixelSize: Theme.textBody
        font.weight: Font.Medium
        textFormat: Text.PlainText
        Accessible.ignored: true
    }
    KeyCap {
        id: cap
        anchors.right: parent.right
        anchors.rightMargin: 10
        y: row.over + (parent.height - row.over - height) / 2
        keys: row.keys
    }
}
