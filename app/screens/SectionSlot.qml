import QtQuick
import Vorle
import Vorle.Models

// One section's place in the window. Its screen is made when the section is first gone to, so that
// the window need not wait for six of them.
Loader {
    id: slot

    required property Shell shell
    required property int number // Section
    property string document: "" // beside this file: a screen that is read when it is first gone to
    readonly property bool current: shell.sections.current === number
    readonly property SectionScreen screen: item as SectionScreen

    signal act(int action)
    signal panelAsked(int panel)
    signal decisionsAsked(reflexRow reflex)
    signal told(string sentence)

    width: parent.width
    height: parent.height
    active: current || item !== null
    visible: current
    focus: current
    Component.onCompleted: {
        if (document.length > 0) {
            setSource(Qt.resolvedUrl(document), { shell: shell });
        }
    }

    Connections {
        target: slot.screen

        function onAct(action: int) {
            slot.act(action);
        }
        function onPanelAsked(panel: int) {
            slot.panelAsked(panel);
        }
        function onDecisionsAsked(reflex: reflexRow) {
            slot.decisionsAsked(reflex);
        }
        function onTold(sentence: string) {
            slot.told(sentence);
        }
    }
}
