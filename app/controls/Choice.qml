import QtQuick
import Vorle

// A setting with its few values, beside its name; under it where there is no room.
Flow {
    id: choice

    property alias name: segments.name
    property alias labels: segments.labels
    property alias dots: segments.dots
    property alias chosen: segments.chosen // of the words where none is told
    property list<string> words: [] // what is kept of each label
    property string present: "" // which of these is

    signal picked(int index)

    function indexOf(word: string): int {
        for (let i = 0; i < words.length; ++i) {
            if (words[i] === word) {
                return i;
            }
        }
        return -1;
    }

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
        chosen: choice.indexOf(choice.present)
        onPicked: index => choice.picked(index)
    }
}
