import QtQuick
import Vorle
import Vorle.Models

// Hangs from the menu-bar item: how far the run is, what waits, and the ways in. Goes when one
// looks elsewhere.
Window {
    id: panel

    required property Shell shell
    readonly property RunModel run: shell.run
    readonly property int waiting: shell.inbox.count
    // Why there is no result, the result, or when the last one was.
    readonly property string lastWord: run.lastError.length > 0 ? run.lastError : run.lastResultText.length > 0 ? run.lastResultText : run.lastRunText.length > 0 ? qsTr("Dernière fouille : %1").arg(run.lastRunText) : qsTr("Je n’ai pas encore fouillé.")

    signal openAsked
    signal addAsked
    signal settingsAsked

    // On a Mac tool windows are hidden while another application is in front, and that is when the
    // item is clicked; elsewhere they are what task bars leave out.
    flags: (Qt.platform.os === "osx" ? Qt.Dialog : Qt.Tool) | Qt.FramelessWindowHint | Qt.WindowStaysOnTopHint
    color: "transparent"
    width: 340
    height: sheet.implicitHeight
    title: qsTr("vorle, en bref")

    onActiveChanged: active ? open.forceActiveFocus(Qt.PopupFocusReason) : hide()

    Rectangle {
        id: sheet
        anchors.fill: parent
        implicitHeight: body.implicitHeight + 40
        radius: Theme.radiusCard
        color: Theme.paper
        border.width: 1
        border.color: Theme.line
        focus: true
        Accessible.role: Accessible.Dialog
        Accessible.name: panel.title
        Keys.onEscapePressed: panel.hide()

        Column {
            id: body
            x: 20
            y: 20
            width: parent.width - 40
            spacing: 14

            Item {
                width: parent.width
                height: Math.max(ember.height, status.implicitHeight)

                Mascot {
                    id: ember
                    size: 38
                    awake: panel.run.running
                }
                RunStatus {
                    id: status
                    anchors.left: ember.right
                    anchors.leftMargin: 14
                    anchors.right: parent.right
                    run: panel.run
                    counting: true
                }
            }
            Label {
                width: parent.width
                visible: !panel.run.running
                text: panel.lastWord
                color: panel.run.lastError.length > 0 ? Theme.accent : Theme.inkSoft
                font.pixelSize: Theme.textNote
            }
            ActionButton {
                width: parent.width
                text: panel.run.running ? qsTr("Arrêter") : qsTr("Fouiller maintenant")
                usable: !panel.run.stopping
                onClicked: panel.run.running ? panel.run.stop() : panel.run.start()
            }
            Rectangle {
                width: parent.width
                height: 1
                color: Theme.line
            }
            ActionButton {
                id: open
                width: parent.width
                primary: true
                text: panel.waiting === 0 ? qsTr("Ouvrir vorle") : panel.waiting === 1 ? qsTr("Trier 1 sujet") : qsTr("Trier %1 sujets").arg(panel.waiting.toLocaleString(Qt.locale("fr_FR"), "f", 0))
                onClicked: {
                    panel.hide();
                    panel.openAsked();
                }
            }
            Row {
                spacing: 10

                ActionButton {
                    width: (body.width - 10) / 2
                    text: qsTr("Ajouter un sujet")
                    onClicked: {
                        panel.hide();
                        panel.addAsked();
                    }
                }
                ActionButton {
                    width: (body.width - 10) / 2
                    text: qsTr("Réglages")
                    onClicked: {
                        panel.hide();
                        panel.settingsAsked();
                    }
                }
            }
        }
    }
}
