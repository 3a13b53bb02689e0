import QtQuick
import Vorle

// No project, or one of those that are watched; where they are many, what is chosen is in sight.
Flickable {
    id: choice

    required property var projects // their names
    property int chosen: -1 // none

    signal picked(int project)
    signal entered

    function words(names: list<string>): list<string> {
        const all = [qsTr("Sans projet")];
        for (let i = 0; i < names.length; ++i) {
            all.push(names[i]);
        }
        return all;
    }
    function show(at: real, wide: real) {
        contentX = Math.max(0, Math.min(contentWidth - width, Math.max(at + wide - width, Math.min(contentX, at))));
    }

    implicitHeight: segments.implicitHeight
    contentWidth: segments.width
    contentHeight: segments.implicitHeight
    interactive: contentWidth > width
    boundsBehavior: Flickable.StopAtBounds
    clip: interactive

    Segments {
        id: segments
        name: qsTr("Projet")
        width: implicitWidth
        labels: choice.words(choice.projects)
        chosen: choice.chosen + 1
        upDown: false
        onPicked: index => choice.picked(index - 1)
        onEntered: choice.entered()
        onChosenChanged: {
            const item = Window.activeFocusItem;
            if (item !== null && item.parent !== null && choice.interactive) {
                const at = item.mapToItem(segments, 0, 0).x;
                choice.show(at, item.width);
            }
        }
    }
}
