import QtQuick
import Vorle

// One section's place in the window. Its screen is made when the section is first gone to, so that
// the window need not wait for six of them.
Loader {
    id: slot

    required property Shell shell
    required property int number // Section
    readonly property bool current: shell.sections.current === number
    readonly property SectionScreen screen: item as SectionScreen

    signal act(int action)

    anchors.fill: parent
    active: current || item !== null
    visible: current
    focus: current

    Connections {
        target: slot.screen

        function onAct(action: int) {
            slot.act(action);
        }
    }
}
