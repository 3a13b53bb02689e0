import QtQuick
import Vorle
import Vorle.Models

// A list of names as pills, with the last one to add another.
PageSection {
    id: section

    required property RowsModel list
    required property string adding // "+ Ajouter un outil"
    property string prompt: adding
    property string help: ""
    property bool tiles: false
    property bool adds: true
    property alias problem: trouble.text

    signal added(string name)
    signal removed(string name)

    function takeFocus() {
        if (pills.count > 0) {
            pills.take(pills.here);
        } else {
            adder.takeFocus();
        }
    }

    Rows {
        id: pills
        width: parent.width
        spacing: 8
        model: section.list
        Accessible.role: Accessible.List
        Accessible.name: section.name
        onEmptied: adder.takeFocus()
        onLeft: by => {
            if (by > 0) {
                adder.takeFocus();
            }
        }
        delegate: Pill {
            required property int index
            required property nameRow row
            name: row.shown
            tile: section.tiles ? row.shown.charAt(0).toUpperCase() : ""
            stop: index === pills.here
            onStepped: by => pills.step(index, by)
            onRemoved: {
                const at = index;
                const had = activeFocus;
                section.removed(row.name);
                if (had) {
                    pills.closeUp(at);
                }
            }
        }

        PillAdder {
            id: adder
            visible: section.adds
            text: section.adding
            prompt: section.prompt
            onAdded: name => section.added(name)
        }
    }
    Label {
        id: trouble
        width: parent.width
        topPadding: 8
        visible: text.length > 0
        color: Theme.tintInk
        font.pixelSize: Theme.textNote
        Accessible.role: Accessible.AlertMessage
    }
    Label {
        width: parent.width
        topPadding: 8
        visible: text.length > 0
        text: section.help
        color: Theme.inkFaint
        font.pixelSize: Theme.textNote
    }
}
