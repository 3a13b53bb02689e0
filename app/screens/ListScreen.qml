import QtQuick
import QtQuick.Templates as T
import Vorle
import Vorle.Models

// A screen with one list under its title, scrolled like a page. Whoever uses it gives the list its
// model and its delegate.
SectionScreen {
    id: screen

    property string subtitle: ""
    property alias list: list
    property alias corner: head.corner // see SectionHead
    // A column in the middle.
    readonly property real inset: Math.max(Theme.margin, (width - Theme.columnWidth) / 2)
    readonly property real contentWidth: width - 2 * inset

    Keys.onPressed: event => event.accepted = !(event.modifiers & ~Qt.KeypadModifier) && sight.takes(event.key)

    function move(step: int) {
        sight.scrollBy(step * 80);
    }
    function focusContent() {
        list.forceActiveFocus();
    }

    InSight {
        id: sight
        view: list
        focused: screen.current ? screen.Window.activeFocusItem : null
    }
    SectionHead {
        id: head
        x: screen.inset
        width: screen.contentWidth
        title: screen.title
        subtitle: screen.subtitle
        searchKeys: screen.shell.keyboard.keys(KeyboardMap.Search)
        onSearchAsked: screen.act(KeyboardMap.Search)
    }
    ListView {
        id: list
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.top: head.bottom
        anchors.topMargin: 12
        anchors.bottom: parent.bottom
        leftMargin: screen.inset
        rightMargin: screen.inset
        onLeftMarginChanged: contentX = -leftMargin
        bottomMargin: Theme.margin
        clip: true
        focus: true
        keyNavigationEnabled: false
        boundsBehavior: Flickable.StopAtBounds
        Accessible.role: Accessible.List
        Accessible.name: screen.subtitle.length > 0 ? screen.subtitle : screen.title
        T.ScrollBar.vertical: ScrollLine {}
        // Into the list: the chain of all items would go round by the menu.
        Keys.onTabPressed: event => {
            event.accepted = Window.activeFocusItem === list;
            if (event.accepted) {
                (headerItem ?? contentItem).nextItemInFocusChain().forceActiveFocus(Qt.TabFocusReason);
            }
        }
    }
}
