import QtQuick
import Vorle
import Vorle.Models

// A row of the palette: a heading, a command with its keys, a topic with its score and its section;
// one that was found shows a line of where.
Item {
    id: row

    required property paletteEntry entry
    property bool pointed: true // the mouse is what points
    readonly property bool current: ListView.isCurrentItem
    readonly property bool found: entry.topic && entry.snippet.length > 0

    signal picked

    height: entry.heading ? Theme.grown(30) : !entry.topic ? Theme.grown(38) : Theme.grown(found ? 54 : 42)
    Accessible.role: entry.heading ? Accessible.Heading : Accessible.ListItem
    Accessible.name: entry.plain
    Accessible.description: {
        if (entry.heading) {
            return "";
        }
        const more = entry.topic ? entry.badge.name : entry.keys.length > 0 ? qsTr("Touche %1").arg(entry.keys) : "";
        return entry.place.length > 0 && more.length > 0 ? qsTr("%1. %2").arg(entry.place).arg(more) : entry.place + more;
    }
    Accessible.focusable: !entry.heading
    Accessible.selectable: !entry.heading
    Accessible.selected: current
    Accessible.onPressAction: picked()

    // What was found stands out by its weight and its colour.
    function marked(text: string): string {
        return text.replace(/<b>/g, "<b><font color=\"" + Theme.tintInk + "\">").replace(/<\/b>/g, "</font></b>");
    }

    HoverHandler {
        id: hover
        enabled: !row.entry.heading
    }
    // Rows change in place: what stands here at the release may not be what was pressed.
    property string pressedOn: ""

    function sign(): string {
        return entry.topicId + " " + entry.action;
    }
    TapHandler {
        enabled: !row.entry.heading
        onPressedChanged: {
            if (pressed) {
                row.pressedOn = row.sign();
            }
        }
        onTapped: {
            if (row.pressedOn === row.sign()) {
                row.picked();
            }
        }
    }
    Rectangle {
        anchors.fill: parent
        visible: row.current || (hover.hovered && row.pointed)
        radius: Theme.radiusButton
        color: row.current ? Theme.sunken : Theme.hover

        Rectangle {
            visible: row.current
            anchors.verticalCenter: parent.verticalCenter
            width: 3
            height: 18
            radius: 1.5
            color: Theme.accent
        }
    }
    Loader {
        x: 12
        anchors.verticalCenter: parent.verticalCenter
        active: row.entry.topic
        sourceComponent: ScoreBadge {
            look: row.entry.badge
            size: 28
            Accessible.ignored: true
        }
    }
    Column {
        x: row.entry.topic ? 54 : 12
        width: (side.visible ? side.x - 16 : parent.width - 12) - x
        anchors.verticalCenter: parent.verticalCenter
        anchors.verticalCenterOffset: row.entry.heading ? 2 : 0

        Label {
            width: parent.width
            text: row.marked(row.entry.title)
            textFormat: Text.StyledText
            color: row.entry.heading ? Theme.inkSoft : Theme.ink
            font.pixelSize: row.entry.heading ? Theme.textNote : Theme.textBody
            font.weight: row.entry.heading || row.entry.topic ? Font.DemiBold : Font.Medium
            elide: Text.ElideRight
            wrapMode: Text.NoWrap
            lineHeight: 1.1
            Accessible.ignored: true
        }
        Label {
            width: parent.width
            visible: row.found
            text: visible ? row.marked(row.entry.snippet) : ""
            textFormat: Text.StyledText
            color: Theme.inkSoft
            font.pixelSize: Theme.textNote
            elide: Text.ElideRight
            wrapMode: Text.NoWrap
            lineHeight: 1.1
            Accessible.ignored: true
        }
    }
    Row {
        id: side
        anchors.right: parent.right
        anchors.rightMargin: 12
        anchors.verticalCenter: parent.verticalCenter
        visible: !row.entry.heading
        spacing: 14

        Label {
            // A command's topic gives way to the command.
            width: row.entry.topic ? implicitWidth : Math.min(implicitWidth, row.width * 0.42)
            visible: text.length > 0
            text: row.entry.place
            color: Theme.inkSoft
            font.pixelSize: Theme.textSmall
            elide: Text.ElideRight
            wrapMode: Text.NoWrap
            lineHeight: 1.1
            anchors.verticalCenter: parent.verticalCenter
            Accessible.ignored: true
        }
        KeyCap {
            keys: row.entry.keys
            bare: true
            anchors.verticalCenter: parent.verticalCenter
        }
    }
}
