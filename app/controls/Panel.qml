import QtQuick
import Vorle

// A sheet over the window: dims what is behind, keeps the keyboard, goes with Échap.
FocusScope {
    id: panel

    property bool shown: false
    property int sheetWidth: 560
    property real bodyHeight: 0 // what stands in it
    property real sheetHeight: bodyHeight + 2 * padding
    property int padding: 28
    property bool nearTop: false // near the top rather than in the middle
    property string name: ""
    default property alias content: inside.data

    signal closed

    anchors.fill: parent
    visible: shown || opacity > 0
    opacity: shown ? 1 : 0
    enabled: shown
    z: 10
    Accessible.role: Accessible.Dialog
    Accessible.name: name
    Accessible.ignored: !shown
    Keys.onEscapePressed: closed()
    Keys.onPressed: event => {
        const steps = {
            [Qt.Key_Up]: -60,
            [Qt.Key_Down]: 60,
            [Qt.Key_PageUp]: -0.9 * pages.height,
            [Qt.Key_PageDown]: 0.9 * pages.height
        };
        if (pages.interactive && event.key in steps) {
            sight.scrollBy(steps[event.key]);
            event.accepted = true;
        }
    }
    onShownChanged: if (shown) forceActiveFocus()

    Behavior on opacity {
        NumberAnimation {
            duration: Theme.quick
        }
    }

    InSight {
        id: sight
        view: pages
        focused: panel.shown ? panel.Window.activeFocusItem : null
    }
    Rectangle {
        anchors.fill: parent
        color: Theme.veil

        TapHandler {
            gesturePolicy: TapHandler.ReleaseWithinBounds
            onTapped: panel.closed()
        }
        HoverHandler {}
    }
    Rectangle {
        id: sheet

        readonly property real room: panel.height - 40

        anchors.horizontalCenter: parent.horizontalCenter
        y: panel.nearTop ? Math.min(96, panel.height * 0.1) : Math.max(20, (panel.height - height) / 2)
        width: Math.min(panel.sheetWidth, parent.width - 40)
        height: Math.min(panel.sheetHeight, panel.nearTop ? panel.height * 0.9 - 20 : room)
        radius: Theme.radiusCard
        color: Theme.dark ? Theme.raised : Theme.card
        border.width: 1
        border.color: Theme.line
        clip: true
        // It comes from where it belongs: from above where it stands near the top.
        transform: Translate {
            y: (1 - panel.opacity) * (panel.nearTop ? -14 : 14)
        }

        TapHandler { // a click inside stays inside
            gesturePolicy: TapHandler.ReleaseWithinBounds
        }

        Flickable {
            id: pages
            anchors.fill: parent
            anchors.margins: panel.padding
            contentHeight: panel.sheetHeight - 2 * panel.padding
            interactive: contentHeight > height + 1
            boundsBehavior: Flickable.StopAtBounds
            clip: interactive

            Item {
                id: inside
                width: pages.width
                height: Math.max(pages.height, pages.contentHeight)
            }
        }
    }
}
