import QtQuick
import Vorle

// One panel's place over the window. The panel is made when it is first asked for.
Loader {
    id: slot

    readonly property Panel panel: item as Panel
    readonly property bool shown: panel !== null && panel.shown

    signal gone

    function show() {
        active = true;
        panel.shown = true;
    }
    function hide() {
        if (panel !== null) {
            panel.shown = false;
        }
    }

    anchors.fill: parent
    active: false

    Connections {
        target: slot.panel

        function onClosed() {
            slot.hide();
        }
        function onShownChanged() {
            if (!slot.panel.shown) {
                slot.gone();
            }
        }
    }
}
