import QtQuick
import Vorle

// A small ember that keeps watch: it opens its eyes while a run is under way.
Item {
    id: mascot

    property bool awake: false
    property int size: 46
    property color halo: Theme.accentTint

    implicitWidth: size
    implicitHeight: size
    Accessible.ignored: true

    Rectangle {
        anchors.centerIn: parent
        width: parent.size
        height: parent.size
        radius: width / 2
        color: mascot.halo

        property int size: mascot.size
    }
    Rectangle {
        anchors.centerIn: parent
        width: mascot.size * 0.56
        height: width
        radius: width / 2
        color: Theme.accent

        Repeater {
            model: 2

            Rectangle {
                required property int index
                width: mascot.size * 0.065
                height: mascot.awake ? width * 1.6 : 2
                radius: width / 2
                x: parent.width * (index === 0 ? 0.34 : 0.66) - width / 2
                y: parent.height * 0.48 - height / 2
                color: Theme.accentInk
            }
        }
    }
}
