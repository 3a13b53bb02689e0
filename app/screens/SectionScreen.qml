import QtQuick
import Vorle
import Vorle.Models

// What stands in a section's place (SectionSlot): made when the section is first chosen, kept from
// then on. What the window asks of every screen, with what most answer.
FocusScope {
    id: screen

    required property Shell shell

    readonly property bool current: visible // its section is the one chosen
    readonly property string title: current ? shell.sections.title : ""

    // An action of the keyboard map, asked for by hand.
    signal act(int action)
    signal panelAsked(int panel) // PanelHost.Panel
    signal decisionsAsked(reflexRow reflex) // those behind it
    signal told(string sentence) // to who listens

    focus: true

    // The arrow keys: by so many steps down.
    function move(step: int) {
    }
    // The keyboard comes to where it rests in this screen.
    function focusContent() {
        forceActiveFocus();
    }
    // Takes back what was done here last; whether there was anything.
    function undo(): bool {
        return false;
    }
    // Whether what an action falls on is in view; where it is not, it is brought there instead.
    function ready(): bool {
        return false;
    }
}
