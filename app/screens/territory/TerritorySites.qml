import QtQuick
import Vorle
import Vorle.Models

// The trusted sites, each with how its feed is. ↩ gives a site another address, ⌫ takes it away.
ListSection {
    id: section

    required property SitesModel model

    name: qsTr("Sites de confiance")
    list: rows
    prompt: qsTr("Ajouter un site que tu lis déjà")
    draft: "site"
    note: model.note
    onAdded: text => settle(model.add(text))
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

    Rows {
        id: rows

        function rename(asking: TerritorySite, index: int, from: string, to: string) {
            change(asking, index, () => section.model.rename(from, to));
        }
        function remove(address: string) {
            drop(() => section.model.remove(address));
        }

        width: parent.width
        model: section.model.rows
        Accessible.role: Accessible.List
        Accessible.name: section.name
        delegate: TerritorySite {
            width: rows.width
            drafts: rows.drafts
            stop: activeFocus || index === rows.here
            onActiveFocusChanged: if (activeFocus) rows.here = index
            onIndexChanged: if (activeFocus) rows.here = index
            onStepped: by => rows.step(index, by)
            onLooked: section.model.look(row.name)
            onWritten: address => rows.rename(this, index, row.name, address)
            onRemoved: rows.remove(row.name)
        }
    }
}
