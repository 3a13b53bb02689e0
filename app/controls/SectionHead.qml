import QtQuick
import Vorle

// A section's title, the line under it, and the way to the search.
Item {
    id: head

    required property string title
    required property string subtitle
    property string searchKeys: ""
    property alias below: extra.data // one item, under the title
    property alias corner: corner.data // one item, in the place of the way to the search

    readonly property bool tight: width < 560

    signal searchAsked

    implicitHeight: titles.y + titles.implicitHeight + (extra.height > 0 ? extra.height + 20 : 0)

    Column {
        id: titles
        y: head.tight ? 18 : 30
        width: parent.width
        spacing: 2

        Title {
            width: parent.width - Math.max(search.visible ? search.width : 0, corner.width) - 16
            text: head.title
            size: head.tight ? Theme.titleOpen : Theme.titleScreen
            wrapMode: Text.NoWrap // a word is never broken: it gets smaller first
            fontSizeMode: Theme.fitting(text, size, width)
            minimumPixelSize: 20
        }
        Label {
            width: parent.width
            text: head.subtitle
            color: Theme.inkFaint
            maximumLineCount: 1
            elide: Text.ElideRight
        }
    }
    Item {
        id: extra
        y: titles.y + titles.implicitHeight + 14
        width: parent.width
        height: children.length > 0 && children[0].visible ? children[0].implicitHeight : 0
    }
    Item {
        id: corner
        anchors.right: parent.right
        y: 36
        width: children.length > 0 ? children[0].implicitWidth : 0
    }
    SearchButton {
        id: search
        visible: corner.children.length === 0
        anchors.right: parent.right
        y: head.tight ? 16 : 32 // the line under the title passes below it
        width: head.tight ? Math.max(Theme.grown(106), 130) : implicitWidth
        keys: head.tight ? "" : head.searchKeys
        onClicked: head.searchAsked()
    }
}
