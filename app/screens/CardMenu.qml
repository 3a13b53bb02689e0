import QtQuick
import Vorle
import Vorle.Models

// What can be done to the card under the pointer, over the whole window. It is about one topic, and
// goes with it: what is picked falls on that one or on none. It goes too where the list moves the
// topic, the window changes, or the keyboard is taken elsewhere.
FocusScope {
    id: menu

    required property Shell shell
    required property TopicSelection selection
    property string topicId: ""
    property string title: ""
    property var actions: [] // CardButton
    readonly property bool shown: topicId.length > 0

    signal act(int action)
    signal gone

    // At a place of the window, for the chosen topic.
    function open(topic: topicCard, at: point, byKey: bool) {
        actions = shell.actions.menu(selection.list.section, topic);
        title = topic.title;
        topicId = topic.topicId;
        column.forceLayout(); // else it is as high as the last one until the next frame
        pages.contentY = 0;
        sheet.x = Math.max(8, Math.min(at.x, width - sheet.width - 8));
        sheet.y = at.y + sheet.height + 8 <= height ? at.y : Math.max(8, Math.min(at.y - sheet.height, height - sheet.height - 8));
        forceActiveFocus(Qt.PopupFocusReason);
        mouse.begin(!byKey);
        byKey ? step(1) : spot.forceActiveFocus(Qt.PopupFocusReason);
    }
    function close() {
        if (shown) {
            topicId = "";
            actions = [];
            gone();
        }
    }
    function pick(action: int) {
        const holds = shown && selection.currentId === topicId;
        close();
        if (holds) {
            act(action);
        }
    }
    function row(index: int): MenuRow {
        return rows.itemAt(index) as MenuRow;
    }
    function current(): int {
        for (let i = 0; i < rows.count; ++i) {
            if (row(i).activeFocus) {
                return i;
            }
        }
        return -1;
    }
    function goTo(index: int) {
        const to = row(index);
        to.forceActiveFocus(Qt.TabFocusReason);
        pages.contentY = Math.max(Math.min(pages.contentY, to.y), to.y + to.height - pages.height);
    }
    function step(by: int) {
        const at = current();
        goTo(at < 0 ? (by > 0 ? 0 : rows.count - 1) : (at + by + rows.count) % rows.count);
    }
    // The key of a line acts as it does without the menu; every other one is kept from the cards.
    function take(event: KeyEvent) {
        event.accepted = true;
        switch (event.key) {
        case Qt.Key_Up:
        case Qt.Key_Backtab:
            step(-1);
            return;
        case Qt.Key_Down:
        case Qt.Key_Tab:
            step(1);
            return;
        case Qt.Key_Home:
        case Qt.Key_PageUp:
            goTo(0);
            return;
        case Qt.Key_End:
        case Qt.Key_PageDown:
            goTo(rows.count - 1);
            return;
        case Qt.Key_Escape:
        case Qt.Key_Left:
        case Qt.Key_Menu:
            close();
            return;
        }
        const action = event.isAutoRepeat ? KeyboardMap.NoAction : shell.keyboard.action(selection.list.section, event.key, event.modifiers, false, event.nativeScanCode);
        if (action !== KeyboardMap.NoAction && actions.some(each => each.action === action)) {
            pick(action);
        }
    }

    visible: shown
    enabled: shown
    Accessible.role: Accessible.PopupMenu
    Accessible.name: title
    Accessible.ignored: !shown
    Keys.onPressed: event => take(event)
    onActiveFocusChanged: if (!activeFocus) close()
    onWidthChanged: close()
    onHeightChanged: close()

    Connections {
        target: menu.shown ? menu.selection : null

        function onCurrentChanged() {
            menu.close(); // the topic went, or stands elsewhere
        }
        function onEnlargedChanged() {
            menu.close();
        }
    }
    Connections {
        target: menu.shown ? menu.shell.sections : null

        function onCurrentChanged() {
            menu.close();
        }
    }
    Connections {
        target: menu.shown ? menu.Window.window : null

        function onActiveChanged() {
            menu.close();
        }
    }
    // A mouse that lies where the menu opens by a key chooses nothing before it moves.
    HoverHandler {
        id: mouse

        property bool moved: true
        property real restX: NaN
        property real restY: NaN

        function begin(counts: bool) {
            moved = counts;
            restX = NaN;
        }
        onPointChanged: {
            if (isNaN(restX)) {
                restX = point.position.x;
                restY = point.position.y;
            } else if (point.position.x !== restX || point.position.y !== restY) {
                moved = true;
            }
        }
    }
    // Where the keyboard rests before a line is pointed at.
    Item {
        id: spot
        focus: true
    }
    // A press beside it puts it away once it is let go: gone before, it would leave the press to what
    // lies behind.
    MouseArea {
        anchors.fill: parent
        acceptedButtons: Qt.AllButtons
        hoverEnabled: true
        onReleased: menu.close()
        onWheel: menu.close()
        Accessible.ignored: true
    }
    Rectangle {
        anchors.fill: sheet
        anchors.topMargin: 4
        anchors.bottomMargin: -4
        radius: sheet.radius
        color: Theme.shadow
    }
    Rectangle {
        id: sheet

        readonly property int inset: 6

        width: Math.min(menu.width - 16, Math.max(Theme.grown(248), column.widest + 2 * inset))
        height: Math.min(menu.height - 16, column.implicitHeight + 2 * inset)
        radius: 14
        color: Theme.dark ? Theme.raised : Theme.card
        border.width: 1
        border.color: Theme.edge

        MouseArea { // what is no line does nothing
            anchors.fill: parent
            acceptedButtons: Qt.AllButtons
            Accessible.ignored: true
        }
        Flickable {
            id: pages
            anchors.fill: parent
            anchors.margins: sheet.inset
            contentHeight: column.implicitHeight
            interactive: contentHeight > height + 1
            boundsBehavior: Flickable.StopAtBounds
            clip: interactive

            Column {
                id: column

                property real widest: 0

                width: pages.width

                Label {
                    x: 12
                    width: parent.width - 24
                    height: implicitHeight + 6
                    text: menu.title
                    color: Theme.inkFaint
                    font.pixelSize: Theme.textSmall
                    topPadding: 5
                    maximumLineCount: 1
                    wrapMode: Text.NoWrap
                    elide: Text.ElideRight
                }
                Repeater {
                    id: rows
                    model: menu.actions
                    onItemAdded: (index, item) => column.widest = Math.max(index === 0 ? 0 : column.widest, item.implicitWidth)

                    MenuRow {
                        required property cardButton modelData
                        width: column.width
                        text: modelData.text
                        keys: modelData.keys
                        apart: modelData.apart
                        pointed: mouse.moved
                        onClicked: menu.pick(modelData.action)
                    }
                }
            }
        }
    }
}
