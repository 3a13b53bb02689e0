import QtQuick
import Vorle

// Puts a text on the pasteboard as it is, and says for a moment that it did.
ActionButton {
    id: button

    property string copied: ""

    implicitHeight: Math.max(Theme.hit, Theme.grown(32))
    leftPadding: 12
    font.pixelSize: Theme.textNote
    text: done.running ? qsTr("Copié") : qsTr("Copier")
    Accessible.name: done.running ? qsTr("Copié") : qsTr("Copier : %1").arg(copied)
    onCopiedChanged: done.stop()
    onClicked: {
        carrier.active = true; // which copies
        carrier.active = false;
        done.restart();
        announcer.say(qsTr("Copié."));
    }

    // For that moment alone: an editor with its document and fonts stood behind every button.
    Loader {
        id: carrier
        active: false
        sourceComponent: TextEdit {
            visible: false
            text: button.copied
            textFormat: TextEdit.PlainText
            Component.onCompleted: {
                selectAll();
                copy();
            }
        }
    }
    Timer {
        id: done
        interval: 1600
    }
    Announcer {
        id: announcer
        Accessible.role: Accessible.Notification
        Accessible.name: words
        Accessible.ignored: words.length === 0
    }
}
