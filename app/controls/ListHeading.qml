import QtQuick
import Vorle

// Stands over the rows of a list that belong together; takes no room without a name.
Item {
    id: heading

    property string name: "" // not required: a list then tells a heading nothing else

    height: name.length > 0 ? 40 : 0

    Title {
        anchors.bottom: parent.bottom
        anchors.bottomMargin: 10
        visible: text.length > 0
        text: heading.name
        color: Theme.inkFaint
        size: Theme.titleSmall
        font.weight: Font.DemiBold
    }
}
