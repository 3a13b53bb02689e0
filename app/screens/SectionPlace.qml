import QtQuick
import Vorle

// One section's place in the window. Its screen is made when the section is first gone to, so that
// the window need not wait for six of them.
Loader {
    id: place

    required property var window // Main
    required property int number
    readonly property bool current: window.sections.current === number

    anchors.fill: parent
    active: current || item !== null
    visible: current
    focus: current
}
