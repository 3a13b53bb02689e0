import QtQuick
import Vorle
import Vorle.Models

// The trusted sites, each with how its feed is. ↩ gives a site another address, ⌫ takes it away.
PageSection {
    id: section

    required property SitesModel model

    name: qsTr("Sites de confiance")
    gap: 4
    corner: Row {
        spacing: 4

        ActionButton {
            quiet: true
            implicitHeight: 32
            font.pixelSize: Theme.textNote
            text: qsTr("Importer un OPML…")
            onClicked: section.model.importList()
        }
        ActionButton {
            quiet: true
            implicitHeight: 32
            font.pixelSize: Theme.textNote
            rightPadding: 0
            text: qsTr("Exporter")
            Accessible.name: qsTr("Exporter tes sites en OPML")
            onClicked: section.model.exportList()
        }
    }

    function takeFocus() {
        if (rows.count > 0) {
            rows.take(rows.here);
        } else {
            adder.takeFocus();
        }
    }

    // By another address it is another row: the one that asked is gone then.
    function rename(asking: TerritorySite, index: int, from: string, to: string) {
        const refusal = model.rename(from, to);
        if (refusal.length > 0) {
            asking.problem = refusal;
        } else {
            rows.take(index);
        }
    }
    function remove(index: int, address: string) {
        rows.drop(index, () => section.model.remove(address));
    }

    Rows {
        id: rows
        width: parent.width
        model: section.model.rows
        Accessible.role: Accessible.List
        Accessible.name: section.name
        onEmptied: adder.takeFocus()
        onSteppedOut: by => {
            if (by > 0) {
                adder.takeFocus();
            }
        }
        delegate: TerritorySite {
            width: rows.width
            stop: activeFocus || index === rows.here
            onActiveFocusChanged: if (activeFocus) rows.here = index
            onIndexChanged: if (activeFocus) rows.here = index
            onStepped: by => rows.step(index, by)
            onLooked: section.model.look(row.name)
            onRenamed: address => section.rename(this, index, row.name, address)
            onRemoved: section.remove(index, row.name)
        }
    }
    Rectangle {
        width: parent.width
        height: 1
        color: Theme.line
        visible: rows.count > 0
    }
    Item {
        width: 1
        height: 10
    }
    AddField {
        id: adder
        width: parent.width
        prompt: qsTr("Ajouter un site que tu lis déjà")
        onAdded: text => settle(section.model.add(text))
    }
    Label {
        width: parent.width
        topPadding: 8
        visible: text.length > 0
        text: section.model.note
        color: Theme.inkSoft
        font.pixelSize: Theme.textNote
        Accessible.role: Accessible.AlertMessage
    }
}
