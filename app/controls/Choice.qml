import QtQuick
import Vorle

// A setting with its few values, beside its name; under it where there is no room.
Flow {
    id: choice

    property alias name: segments.name
    property alias labels: segments.labels
    property alias dots: segments.dots
    property alias chosen: segments.chosen

    signal picked(int index)

    function takeFocus() {
        segments.takeFocus();
    }

    spacing: 8

    Label {
        width: 206
        height: segments.height
        verticalAlignment: Text.AlignVCenter
        text: segments.name
        color: Theme.inkSoft
        font.weight: Font.Medium
        Accessible.ignored: true
    }
    Segments {
        id: segments
        name: ""
        labels: []
        onPicked: index => choice.picked(index)
    }
}
