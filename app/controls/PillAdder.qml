import QtQuick
import Vorle

// The last of a row of pills: a button that turns into a line to write on.
Item {
    id: adder

    required property string text
    property string prompt: text
    property bool writes: true // else it only asks
    readonly property bool writing: field.active

    signal asked
    signal added(string name)

    function takeFocus() {
        button.forceActiveFocus(Qt.TabFocusReason);
    }
    function stop() {
        const had = (field.item as TextEntry)?.activeFocus ?? false;
        field.active = false;
        if (had) {
            takeFocus();
        }
    }

    implicitWidth: writing ? 240 : button.implicitWidth
    implicitHeight: 30

    PillButton {
        id: button
        visible: !adder.writing
        text: adder.text
        onClicked: {
            if (adder.writes) {
                field.active = true;
            } else {
                adder.asked();
            }
        }
    }
    Loader {
        id: field
        active: false
        onLoaded: (field.item as TextEntry).forceActiveFocus(Qt.TabFocusReason)
        sourceComponent: TextEntry {
            implicitWidth: 240
            implicitHeight: 30
            leftPadding: 12
            rightPadding: 12
            font.pixelSize: Theme.textNote
            placeholderText: adder.prompt
            onAccepted: {
                if (text.trim().length === 0) {
                    adder.stop();
                } else {
                    adder.added(text);
                    clear();
                }
            }
            onActiveFocusChanged: if (!activeFocus) Qt.callLater(adder.stop)
            Keys.onEscapePressed: adder.stop()
        }
    }
}
