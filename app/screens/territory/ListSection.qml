import QtQuick
import Vorle
import Vorle.Models

// A list on the territory's page, with the line that adds to it.
PageSection {
    id: section

    required property Rows list // which stands in it
    required property string prompt // of the line that adds
    property string note: "" // what became of it
    required property Drafts drafts
    required property string draft // of that line
    default property alias body: holder.data

    signal added(string text) // answered by settle()

    gap: 4

    function takeFocus() {
        if (list.count > 0) {
            list.take(list.here);
        } else {
            adder.takeFocus();
        }
    }
    function settle(refusal: string) {
        adder.settle(refusal);
    }

    Connections {
        target: section.list

        function onEmptied() {
            adder.takeFocus();
        }
        function onSteppedOut(by: int) {
            if (by > 0) {
                adder.takeFocus();
            }
        }
    }
    Column {
        id: holder
        width: parent.width
    }
    Rectangle {
        width: parent.width
        height: 1
        color: Theme.line
        visible: section.list.count > 0
    }
    OrphanLine {
        list: section.list
    }
    Item {
        width: 1
        height: 10
    }
    AddField {
        id: adder
        width: parent.width
        prompt: section.prompt
        drafts: section.drafts
        draft: section.draft
        onAdded: text => section.added(text)
    }
    Label {
        width: parent.width
        topPadding: 8
        visible: text.length > 0
        text: section.note
        color: Theme.inkSoft
        font.pixelSize: Theme.textNote
        Accessible.role: Accessible.AlertMessage
    }
}
