import QtQuick
import Vorle

// Links that are dragged onto the window are taken in where they are let go; meanwhile it says what
// will become of them, and what is none is refused with a sentence.
DropArea {
    id: drop

    required property TopicLinks links
    property int offer: TopicLinks.Nothing
    readonly property bool takes: offer === TopicLinks.Links

    // Never as a move: whoever gives it away would lose it.
    function answer(event: DragEvent) {
        const as = event.supportedActions & Qt.CopyAction ? Qt.CopyAction : event.supportedActions & Qt.LinkAction;
        if (as && offer !== TopicLinks.Nothing) {
            event.accept(as);
        } else {
            event.accepted = false;
            offer = TopicLinks.Nothing;
        }
    }
    function words(event: DragEvent): string {
        return event.hasText ? event.text : "";
    }

    onEntered: event => {
        offer = links.offerOf(event.urls, words(event));
        answer(event);
    }
    onPositionChanged: event => answer(event)
    onExited: offer = TopicLinks.Nothing
    onEnabledChanged: offer = TopicLinks.Nothing
    onDropped: event => {
        answer(event);
        if (event.accepted) {
            links.takeDropped(event.urls, words(event));
        }
        offer = TopicLinks.Nothing;
    }

    Loader {
        anchors.fill: parent
        active: drop.offer !== TopicLinks.Nothing
        sourceComponent: Rectangle {
            color: Theme.veil

            Rectangle {
                anchors.centerIn: parent
                width: Math.min(parent.width - 48, 520)
                height: column.implicitHeight + 56
                radius: Theme.radiusCard
                color: drop.takes ? Theme.raised : Theme.sunken
                border.width: 2
                border.color: drop.takes ? Theme.accent : Theme.edge
                Accessible.role: Accessible.AlertMessage
                Accessible.name: head.text + ". " + detail.text

                Column {
                    id: column
                    anchors.centerIn: parent
                    width: parent.width - 56
                    spacing: 12

                    Mascot {
                        anchors.horizontalCenter: parent.horizontalCenter
                        awake: drop.takes
                        halo: drop.takes ? Theme.accentTint : Theme.well
                    }
                    Title {
                        id: head
                        width: parent.width
                        horizontalAlignment: Text.AlignHCenter
                        size: Theme.titleOpen
                        text: drop.takes ? qsTr("Dépose le lien ici") : drop.offer === TopicLinks.Files ? qsTr("Je ne lis pas les fichiers") : qsTr("Ce n’est pas un lien")
                    }
                    Label {
                        id: detail
                        width: parent.width
                        horizontalAlignment: Text.AlignHCenter
                        color: Theme.inkSoft
                        text: drop.takes ? qsTr("Je lis la page, je la juge, et tu la retrouves dans « À trier ».") : qsTr("Glisse plutôt l’adresse d’une page, depuis ton navigateur.")
                    }
                }
            }
        }
    }
}
