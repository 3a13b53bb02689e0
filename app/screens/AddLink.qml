import QtQuick
import Vorle

// ⌘N: a link to have read and judged.
Panel {
    id: panel

    property string suggestion: "" // a link found on the pasteboard
    property string problem: ""
    // Whoever ends the program asks.
    readonly property bool unsaved: shown && (link.text !== suggestion || note.text.length > 0)

    signal added(string url, string note)

    name: qsTr("Ajouter un sujet")
    nearTop: true
    onShownChanged: {
        if (shown) {
            problem = "";
            link.text = suggestion;
            note.text = "";
            link.selectAll();
            link.forceActiveFocus();
        }
    }

    function send() {
        if (link.text.trim().length > 0) {
            panel.added(link.text.trim(), note.text.trim());
        }
    }

    bodyHeight: body.implicitHeight

    Column {
        id: body
        width: parent.width
        spacing: 14

        Title {
            text: panel.name
            size: Theme.titleOpen
        }
        Label {
            width: parent.width
            text: qsTr("Je lis la page, je la juge, et tu la retrouves dans « À trier ».")
            color: Theme.inkSoft
        }
        TextEntry {
            id: link
            width: parent.width
            focus: true
            placeholderText: qsTr("L’adresse de la page")
            onTextEdited: panel.problem = ""
            onAccepted: panel.send()
        }
        TextEntry {
            id: note
            width: parent.width
            placeholderText: qsTr("Une note pour toi et pour le juge, si tu veux")
            onAccepted: panel.send()
        }
        Label {
            width: parent.width
            visible: text.length > 0
            text: panel.problem
            color: Theme.accent
            Accessible.role: Accessible.AlertMessage
        }
        Row {
            anchors.right: parent.right
            spacing: 10

            ActionButton {
                text: qsTr("Annuler")
                keys: qsTr("Échap")
                onClicked: panel.closed()
            }
            ActionButton {
                text: qsTr("Ajouter")
                keys: "↩"
                primary: true
                usable: link.text.trim().length > 0
                onClicked: panel.send()
            }
        }
    }
}
