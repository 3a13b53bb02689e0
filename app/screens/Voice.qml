import QtQuick
import Vorle

// Says decisions, and whatever else it is given, to who listens.
Announcer {
    id: voice

    required property Shell shell

    Accessible.role: Accessible.Notification
    Accessible.name: words

    Connections {
        target: voice.shell.actions

        function onDecidedAloud(sentence: string) {
            voice.say(sentence);
        }
    }
}
