import QtQuick
import Vorle

// Says decisions, and whatever else it is given, to who listens.
Announcer {
    id: voice

    required property Shell shell

    Accessible.role: Accessible.Notification
    Accessible.name: words

    Connections {
        target: voice.shell.decisions

        function onDecided(topicId: string, went: string) {
            voice.say(qsTr("%1. %2").arg(went).arg(voice.shell.titleOf(topicId)));
        }
    }
}
