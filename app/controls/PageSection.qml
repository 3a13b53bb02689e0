import QtQuick
import Vorle

// A part of a long page under its heading, with what stands at its right.
Column {
    id: section

    required property string name
    property alias corner: corner.data // one item, beside the heading
    property int gap: 12

    signal focusAsked

    // The keyboard comes to its first row.
    function takeFocus() {
        focusAsked();
    }

    Item {
        width: parent.width
        implicitHeight: Math.max(34, heading.implicitHeight, corner.height) + section.gap

        Title {
            id: heading
            width: parent.width - corner.width - 12
            y: Math.max(0, (parent.height - section.gap - implicitHeight) / 2)
            text: section.name
            size: Theme.titleCard
        }
        Item {
            id: corner
            anchors.right: parent.right
            y: Math.max(0, (parent.height - section.gap - height) / 2)
            width: children.length > 0 ? children[0].implicitWidth : 0
            height: children.length > 0 ? children[0].implicitHeight : 0
        }
    }
}
