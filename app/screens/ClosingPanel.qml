import QtQuick
import Vorle
import Vorle.Models

// Asked when the window is closed during a run and nothing would be left to reach the app by.
Panel {
    id: panel

    required property RunModel run

    signal confirmed

    name: qsTr("Quitter pendant la fouille ?")
    bodyHeight: body.implicitHeight
    sheetWidth: 480
    onShownChanged: {
        if (shown) {
            confirm.forceActiveFocus(Qt.TabFocusReason);
        }
    }

    // The question goes with what it was about.
    Connections {
        target: panel.run

        function onRunningChanged() {
            if (!panel.run.running) {
                panel.closed();
            }
        }
    }

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
            text: qsTr("Il n’y a pas de barre où je pourrais rester : si tu fermes la fenêtre, je m’arrête, et la fouille avec moi. Ce qui est déjà jugé t’attendra dans « À trier ».")
            color: Theme.inkSoft
        }
        Row {
            anchors.right: parent.right
            spacing: 10

            ActionButton {
                text: qsTr("Continuer la fouille")
                keys: qsTr("Échap")
                onClicked: panel.closed()
            }
            ActionButton {
                id: confirm
                text: qsTr("Arrêter et quitter")
                keys: "↩"
                primary: true
                onClicked: panel.confirmed()
            }
        }
    }
}
