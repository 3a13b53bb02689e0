import QtQuick
import Vorle
import Vorle.Models

// The six sections, what waits in each, and the next run.
AccessibilityBarrier {
    id: bar

    required property Sections model
    required property int current
    required property RunModel run
    required property KeyboardMap keyboard
    readonly property string keysRun: keyboard.keys(KeyboardMap.RunNow)
    readonly property bool low: width < 220 // there is little room
    // Nor over the card for the six and what stands below them: that takes the name's place.
    readonly property real itemsTop: tight ? 62 : 84 // of the six
    readonly property bool tight: foot.visible && (card.y - 84 - 8 - 40) / items.count - 4 < 28

    signal picked(int section)
    signal runAsked
    signal stopAsked
    signal contentAsked // the arrow that goes to the content
    signal acted(int action) // KeyboardMap.Action

    Accessible.role: Accessible.Grouping
    Accessible.name: qsTr("Barre latérale")

    function focusCurrent() {
        items.itemAt(current).forceActiveFocus(Qt.TabFocusReason);
    }

    Rectangle {
        anchors.fill: parent
        color: Theme.side

        Rectangle {
            anchors.right: parent.right
            width: 1
            height: parent.height
            color: Theme.line
        }
    }
    Row {
        id: brand
        x: 34
        y: 28
        spacing: 14

        Mascot {
            size: 26
            awake: bar.run.running
            anchors.verticalCenter: parent.verticalCenter
        }
        Title {
            visible: !bar.tight
            text: qsTr("vorle")
            size: Theme.scaled(26)
            Accessible.ignored: true // as the window is called
            anchors.verticalCenter: parent.verticalCenter
        }
    }
    Column {
        x: 18
        y: bar.itemsTop
        width: parent.width - 37
        spacing: 4
        Accessible.role: Accessible.PageTabList
        Accessible.name: qsTr("Rubriques")

        Repeater {
            id: items
            model: bar.model

            SideItem {
                id: entry
                required property int index
                required title
                required count
                width: parent.width
                // All six stand over what is below, in however low a window.
                height: Math.max(22, Math.min(implicitHeight, ((foot.visible && !bar.tight ? foot.y : card.y) - bar.itemsTop - 8) / items.count - 4))
                strong: entry.index === 0
                current: bar.current === entry.index
                onClicked: bar.picked(entry.index)
                Keys.onUpPressed: if (entry.index > 0) bar.step(entry.index - 1)
                Keys.onDownPressed: if (entry.index < items.count - 1) bar.step(entry.index + 1)
                Keys.onRightPressed: bar.contentAsked()
                Keys.onReturnPressed: bar.enter(entry.index)
                Keys.onEnterPressed: bar.enter(entry.index)
                Keys.onSpacePressed: bar.enter(entry.index)
            }
        }
    }

    function enter(index: int) {
        picked(index);
        contentAsked();
    }
    function step(index: int) {
        picked(index);
        items.itemAt(index).forceActiveFocus(Qt.TabFocusReason);
    }

    // What menus over the screen have elsewhere.
    Row {
        id: foot
        x: bar.tight ? parent.width - width - 19 : bar.low ? 18 : 24
        y: bar.tight ? brand.y - 3 : card.y - height - 8
        height: 32
        visible: !Theme.mac
        spacing: 4

        SideButton {
            text: qsTr("Réglages")
            keys: bar.keyboard.keys(KeyboardMap.OpenSettings)
            onClicked: bar.acted(KeyboardMap.OpenSettings)

            GearSign {
                anchors.centerIn: parent
            }
        }
        SideButton {
            id: help
            text: qsTr("Raccourcis clavier")
            keys: bar.keyboard.keys(KeyboardMap.ShowShortcuts)
            onClicked: bar.acted(KeyboardMap.ShowShortcuts)

            Title {
                anchors.fill: parent
                text: "?"
                size: Theme.titleSmall
                color: Theme.inkSoft
                horizontalAlignment: Text.AlignHCenter
                verticalAlignment: Text.AlignVCenter
                Accessible.ignored: true
            }
        }
    }
    Rectangle {
        id: card
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.bottom: parent.bottom
        anchors.margins: bar.low ? 12 : 18
        anchors.rightMargin: 19
        height: runColumn.implicitHeight + 2 * runColumn.y
        radius: Theme.radiusCard
        color: Theme.card
        border.width: 1
        border.color: Theme.line
        Accessible.role: Accessible.Grouping
        Accessible.name: qsTr("Fouille")

        Column {
            id: runColumn
            x: bar.low ? 12 : 16
            y: x
            width: parent.width - 2 * x
            spacing: 4

            RunStatus {
                width: parent.width
                run: bar.run
            }
            Item {
                width: 1
                height: 8
            }
            ActionButton {
                width: parent.width
                text: bar.run.running ? qsTr("Arrêter") : Theme.textScale > (bar.low ? 100 : 120) ? qsTr("Fouiller") : qsTr("Fouiller maintenant")
                keys: bar.run.running || bar.keysRun.length > 3 ? "" : bar.keysRun
                KeyNavigation.backtab: foot.visible ? help as Item : items.count > 0 ? items.itemAt(items.count - 1) : null
                onClicked: bar.run.running ? bar.stopAsked() : bar.runAsked()
            }
        }
    }
}
