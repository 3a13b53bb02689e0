import QtQuick
import Vorle

// A named part of a reading page.
Column {
    id: chapter

    required property string name
    default property alias content: inside.data

    spacing: 10
    visible: inside.implicitHeight > 0

    Title {
        width: parent.width
        text: chapter.name
        color: Theme.inkFaint
        size: Theme.titleSmall
        font.weight: Font.DemiBold
    }
    Column {
        id: inside
        width: parent.width
        spacing: 8
    }
}
