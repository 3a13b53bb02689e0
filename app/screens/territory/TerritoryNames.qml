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
    property bool writes: true // the last pill turns into a line to write on
    property Drafts drafts: null
    property string draft: "" // of that line
    property var proposed: [] // names to take with a press
    property alias problem: trouble.text

    signal added(string name) // answered by `problem`
    signal asked // where nothing is written
    signal removed(string name)

    function takeFocus() {
        if (pills.count > 0) {
            pills.take(pills.here);
        } else {
            adder.takeFocus();
        }
    }

    // What was proposed goes from there: the keyboard stays with the list.
    function accept(name: string, hadFocus: bool) {
        added(name);
        if (hadFocus) {
            adder.takeFocus();
        }
    }
    function remove(name: string) {
        pills.drop(() => section.removed(name));
    }

    Rows {
        id: pills
        width: parent.width
        spacing: 8
        model: section.list
        Accessible.role: Accessible.List
        Accessible.name: section.name
        onEmptied: adder.takeFocus()
        onSteppedOut: by => {
            if (by > 0) {
                adder.takeFocus();
            }
        }
        delegate: Pill {
            required property int index
            required property nameRow row
            name: row.shown
            tile: section.tiles ? row.shown.charAt(0).toUpperCase() : ""
            icon: row.icon
            stop: activeFocus || index === pills.here
            onActiveFocusChanged: if (activeFocus) pills.here = index
            onIndexChanged: if (activeFocus) pills.here = index
            onStepped: by => pills.step(index, by)
            onRemoved: section.remove(row.name)
        }

        PillAdder {
            id: adder
            text: section.adding
            prompt: section.prompt
            writes: section.writes
            drafts: section.drafts
            draft: section.draft
            onWritingChanged: if (!writing) section.problem = ""
            onAsked: section.asked()
            onAdded: name => {
                section.added(name);
                settle(section.problem);
            }
        }
    }
    Flow {
        width: parent.width
        topPadding: 10
        spacing: 8
        visible: section.proposed.length > 0

        Label {
            height: 30
            verticalAlignment: Text.AlignVCenter
            text: qsTr("Trouvés ici :")
            color: Theme.inkFaint
            font.pixelSize: Theme.textNote
            Accessible.ignored: true
        }
        Repeater {
            model: section.proposed

            PillButton {
                required property string modelData
                text: qsTr("+ %1").arg(modelData)
                Accessible.name: qsTr("Ajouter %1").arg(modelData)
                onClicked: section.accept(modelData, activeFocus)
            }
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
