import QtQuick
import Vorle
import Vorle.Models

// The pages of the settings, one below the other, or on one level where there is no room beside
// them: a single stop for the Tab key, the arrows choose.
Flow {
    id: menu

    required property SettingsPages pages
    property bool level: false

    signal entered // the arrow that goes into the page

    function takeFocus() {
        (items.itemAt(pages.page) as Item).forceActiveFocus(Qt.TabFocusReason);
    }
    function step(to: int) {
        if (to >= 0 && to < items.count) {
            (items.itemAt(to) as Item).forceActiveFocus(Qt.TabFocusReason);
            pages.page = to;
        }
    }

    spacing: 2
    Accessible.role: Accessible.PageTabList
    Accessible.name: qsTr("Pages des réglages")

    Repeater {
        id: items
        model: menu.pages.pages

        Item {
            id: item
            required property int index
            required property string modelData
            readonly property bool current: index === menu.pages.page && !menu.pages.searching

            width: menu.level ? word.implicitWidth + 30 : menu.width
            height: Math.max(36, word.implicitHeight + 16)
            activeFocusOnTab: index === menu.pages.page || activeFocus
            Accessible.role: Accessible.PageTab
            Accessible.name: modelData
            Accessible.focusable: true
            Accessible.focused: activeFocus
            Accessible.selected: current
            Accessible.onPressAction: menu.pages.page = index
            Keys.onUpPressed: event => menu.level ? event.accepted = false : menu.step(index - 1)
            Keys.onDownPressed: menu.level ? menu.entered() : menu.step(index + 1)
            Keys.onLeftPressed: event => menu.level ? menu.step(index - 1) : event.accepted = false
            Keys.onRightPressed: menu.level ? menu.step(index + 1) : menu.entered()
            Keys.onReturnPressed: menu.entered()
            Keys.onEnterPressed: menu.entered()
            Keys.onSpacePressed: menu.pages.page = index

            TapHandler {
                onTapped: menu.pages.page = item.index
            }
            HoverHandler {
                id: hover
            }
            Rectangle {
                anchors.fill: parent
                radius: 10
                color: item.current ? (Theme.dark ? Theme.raised : Theme.card) : hover.hovered ? Theme.hover : "transparent"
                border.width: item.current ? 1 : 0
                border.color: Theme.line

                Rectangle {
                    visible: item.current && !menu.level
                    anchors.verticalCenter: parent.verticalCenter
                    width: 3
                    height: 18
                    radius: 1.5
                    color: Theme.accent
                }
                FocusRing {
                    radius: 13
                    shown: item.activeFocus
                }
            }
            Label {
                id: word
                x: 14
                anchors.verticalCenter: parent.verticalCenter
                text: item.modelData
                color: item.current ? Theme.ink : Theme.inkSoft
                font.weight: item.current ? Font.DemiBold : Font.Medium
                wrapMode: Text.NoWrap
                lineHeight: 1
                Accessible.ignored: true
            }
        }
    }
}
