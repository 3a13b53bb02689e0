import QtQuick
import Vorle
import Vorle.Models

// One setting: what it is called, what it is for, and its control at the right; under the words
// where there is no room beside them.
Item {
    id: row

    required property SettingsPages pages
    required property string key // see SettingsPages
    property string help: pages.help(key)
    property bool troubled: false // the help tells of a fault
    property bool present: true // there is something to set now
    property bool bare: false // the control says all of it, over the whole width
    readonly property string title: pages.title(key)
    readonly property bool shown: isShown(pages.shown)
    default property alias control: holder.data // one item

    readonly property Item held: holder.children.length > 0 ? holder.children[0] : null
    readonly property bool below: held !== null && held.implicitWidth > width * 0.62

    function isShown(keys: list<string>): bool {
        for (let i = 0; i < keys.length; ++i) {
            if (keys[i] === key) {
                return true;
            }
        }
        return false;
    }
    // What the keyboard comes to; null where there is nothing to set or to press now.
    function stop(): Item {
        const next = holder.nextItemInFocusChain();
        let above = next;
        while (above !== null && above !== holder) {
            above = above.parent;
        }
        return visible && above !== null ? next : null;
    }
    function takeFocus() {
        stop()?.forceActiveFocus(Qt.TabFocusReason);
    }

    onPresentChanged: pages.setPresent(key, present)
    Component.onCompleted: pages.setPresent(key, present)

    visible: shown && present
    width: parent?.width ?? 0
    implicitHeight: bare ? held?.implicitHeight ?? 0 : Math.max(60, (below ? words.height + 8 + holder.height : Math.max(words.height, holder.height)) + 20)
    Accessible.role: Accessible.Grouping
    Accessible.name: title
    Accessible.description: help

    Column {
        id: words
        visible: !row.bare
        anchors.verticalCenter: row.below ? undefined : parent.verticalCenter
        y: 10
        width: row.below ? parent.width : parent.width - holder.width - 20
        spacing: 2

        Label {
            width: parent.width
            text: row.title
            font.pixelSize: Theme.textMenu
            font.weight: Font.Medium
            lineHeight: 1.15
            Accessible.ignored: true
        }
        Label {
            width: parent.width
            visible: text.length > 0
            text: row.help
            color: row.troubled ? Theme.tintInk : Theme.inkSoft
            font.pixelSize: Theme.textNote
            Accessible.ignored: true
        }
    }
    Item {
        id: holder
        x: row.below || row.bare ? 0 : parent.width - width
        y: row.bare ? 0 : row.below ? words.y + words.height + 8 : (parent.height - height) / 2
        width: row.held === null ? 0 : row.bare ? row.width : Math.min(row.held.implicitWidth, row.width)
        height: row.held?.implicitHeight ?? 0
    }
    Rectangle {
        anchors.bottom: parent.bottom
        width: parent.width
        height: 1
        color: Theme.line
    }
}
