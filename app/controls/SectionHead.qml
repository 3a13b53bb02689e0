import QtQuick
import Vorle

// A section's title, the line under it, and the way to the search.
Item {
    id: head

    required property string title
    required property string subtitle
    property string searchKeys: ""

    signal searchAsked

    implicitHeight: titles.y + titles.implicitHeight

    Column {
        id: titles
        y: 30
        width: parent.width - search.width - 16
        spacing: 2

        Title {
            width: parent.width
            text: head.title
            size: Theme.titleScreen
        }
        Label {
            width: parent.width
            text: head.subtitle
            color: Theme.inkFaint
            maximumLineCount: 1
            elide: Text.ElideRight
        }
    }
    SearchButton {
        id: search
        anchors.right: parent.right
        y: 38
        keys: head.searchKeys
        onClicked: head.searchAsked()
    }
}
