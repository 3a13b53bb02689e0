import QtQuick
import Vorle

// A new version: what is known of it, how far it is, and what the person may answer.
Panel {
    id: panel

    required property UpdateModel model
    // Before somebody's eyes, as far as a window knows: a hidden or minimized one shows nothing.
    readonly property bool seen: shown && Window.visibility !== Window.Hidden && Window.visibility !== Window.Minimized

    // The keyboard stands on what one would do next, also when that is another button by now.
    function settle() {
        const held = panel.Window.activeFocusItem;
        if (shown && (held === null || !held.visible || held === panel || !held.enabled)) {
            for (let i = 0; i < answers.children.length; ++i) {
                const button = answers.children[i] as ActionButton;
                if (button?.visible) {
                    button.forceActiveFocus(Qt.TabFocusReason);
                    return;
                }
            }
        }
    }

    name: qsTr("Mise à jour")
    sheetWidth: 520
    bodyHeight: body.implicitHeight
    onSeenChanged: model.watch(seen)
    onShownChanged: shown ? settle() : model.putAway()

    Connections {
        target: panel.model

        function onChanged() {
            settling.restart();
        }
    }
    Timer { // once the buttons have followed
        id: settling
        interval: 0
        onTriggered: panel.settle()
    }
    Column {
        id: body
        width: parent.width
        spacing: 14

        Label {
            width: parent.width
            text: panel.name
            color: Theme.inkFaint
            font.pixelSize: Theme.textNote
        }
        Column {
            width: parent.width
            spacing: 4

            Title {
                width: parent.width
                text: panel.model.title
                size: Theme.titleOpen
                color: panel.model.failed ? Theme.tintInk : Theme.ink
                Accessible.role: Accessible.AlertMessage
            }
            Label {
                width: parent.width
                visible: text.length > 0
                text: panel.model.amount
                color: Theme.inkSoft
            }
            Label {
                width: parent.width
                visible: text.length > 0
                text: panel.model.text
                color: Theme.inkSoft
            }
        }
        Rectangle {
            width: parent.width
            height: 5
            radius: 2.5
            visible: panel.model.working
            color: Theme.line
            Accessible.role: Accessible.ProgressBar
            Accessible.name: panel.model.title
            Accessible.description: panel.model.progress >= 0 ? qsTr("%1 %").arg(Math.round(100 * panel.model.progress)) : ""

            Rectangle {
                width: parent.width * Math.max(0, panel.model.progress)
                height: parent.height
                radius: parent.radius
                color: Theme.accent
            }
        }
        Label {
            width: parent.width
            visible: text.length > 0
            text: panel.model.notes
        }
        Item {
            width: parent.width
            visible: panel.model.installable
            implicitHeight: Math.max(later.implicitHeight, itself.height)

            Label {
                id: later
                anchors.verticalCenter: parent.verticalCenter
                width: parent.width - itself.width - 16
                text: qsTr("Installer les prochaines toute seule")
                Accessible.ignored: true
            }
            Switch {
                id: itself
                anchors.right: parent.right
                anchors.verticalCenter: parent.verticalCenter
                name: later.text
                on: panel.model.installsByItself
                onToggled: on => panel.model.installsByItself = on
            }
        }
        Column {
            width: parent.width
            visible: panel.model.permissionWanted
            spacing: 8

            Rectangle {
                width: parent.width
                height: 1
                color: Theme.line
            }
            Label {
                width: parent.width
                text: qsTr("Je peux regarder chaque jour s’il y a une nouvelle version. Je ne dis rien de toi ni de tes sujets.")
                color: Theme.inkSoft
            }
            Flow {
                width: parent.width
                spacing: 10

                ActionButton {
                    text: qsTr("Chaque jour")
                    onClicked: panel.model.allow(true)
                }
                ActionButton {
                    text: qsTr("Seulement quand je le demande")
                    onClicked: panel.model.allow(false)
                }
            }
        }
        Flow {
            id: answers
            width: parent.width
            layoutDirection: Qt.RightToLeft
            spacing: 10

            ActionButton {
                visible: panel.model.installable
                text: qsTr("Installer et relancer")
                primary: true
                onClicked: panel.model.install()
            }
            ActionButton {
                visible: panel.model.relaunchable
                text: qsTr("Relancer maintenant")
                primary: true
                onClicked: panel.model.relaunch()
            }
            ActionButton {
                visible: panel.model.failed
                text: qsTr("Réessayer")
                primary: true
                onClicked: panel.model.retry()
            }
            ActionButton {
                visible: panel.model.deferrable
                text: qsTr("Plus tard")
                onClicked: panel.model.putOff()
            }
            ActionButton {
                visible: panel.model.installable
                text: qsTr("Passer cette version")
                quiet: true
                onClicked: {
                    panel.model.skip();
                    panel.closed();
                }
            }
            ActionButton {
                visible: panel.model.stoppable
                text: qsTr("Arrêter")
                onClicked: panel.model.stop()
            }
            ActionButton {
                text: qsTr("Fermer")
                keys: qsTr("Échap")
                onClicked: panel.closed()
            }
        }
    }
}
