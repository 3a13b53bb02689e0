import QtQuick
import Vorle

// Stands over the rows of a list that belong together; takes no room without a name.
Item {
    id: heading

    property string name: "" // not required: a list then tells a heading nothing else
    property int count: 0 // of the rows
    property real inset: 0

    height: name.length > 0 ? Theme.headingHeight : 0

    Title {
        id: words
        x: heading.inset
        anchors.bottom: parent.bottom
        anchors.bottomMargin: 10
        visible: text.length > 0
        text: heading.name
        color: Theme.inkFaint
        size: Theme.titleTier
        lineHeightMode: Text.FixedHeight
        lineHeight: Theme.scaled(20)
    }
    Label {
        anchors.left: words.right
        anchors.leftMargin: 8
        anchors.bottom: words.bottom
        visible: words.visible && heading.count > 0
        text: heading.count.toLocaleString(Qt.locale("fr_FR"), "f", 0)
        color: Theme.inkFaint
        font: Theme.noteFontMedium
        lineHeightMode: Text.FixedHeight
        lineHeight: Theme.scaled(20)
        Accessible.name: heading.count > 1 ? qsTr("%1 sujets").arg(text) : qsTr("1 sujet")
    }
}
