import QtQuick
import Vorle
import Vorle.Models

// What the window asks of its panels, which are read later (Panels.qml).
Item {
    enum Panel {
        Search,
        Shortcuts,
        AddLink,
        Settings,
        Closing,
        Calibration,
        Send,
        Apps,
        StartAgain,
        Feedback,
        Update
    }

    required property Shell shell
    property bool shown: false // one of them

    signal gone // one of them was put away
    signal added // a link
    signal found(int section, string topicId)
    signal quitAsked
    signal sectionAsked(int section)
    signal acted(int action) // KeyboardMap.Action

    // Puts the others away: two would fight for the keyboard.
    function open(panel: int) {
    }
    function close() {
    }
    // Asked of the panels themselves: a binding on them may not have been told yet.
    function anyShown(): bool {
        return false;
    }
    function isShown(panel: int): bool {
        return false;
    }
    function correct(topicId: string) {
    }
    function showDecisions(reflex: reflexRow) {
    }
}
