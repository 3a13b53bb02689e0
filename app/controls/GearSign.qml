import QtQuick
import Vorle

// A gear wheel, drawn: what fonts have under that sign differs, or is missing.
Item {
    id: gear

    property color ink: Theme.inkSoft
    property color ground: Theme.side

    implicitWidth: 16
    implicitHeight: 16
    Accessible.ignored: true

    Repeater {
        model: 4 // each is two teeth

        Rectangle {
            required property int index
            anchors.centerIn: parent
            width: gear.width
            height: gear.width * 0.22
            radius: 1
            rotation: index * 45
            antialiasing: true
            color: gear.ink
        }
    }
    Rectangle {
        anchors.centerIn: parent
        width: gear.width * 0.72
        height: width
        radius: width / 2
        color: gear.ink
    }
    Rectangle {
        anchors.centerIn: parent
        width: gear.width * 0.36
        height: width
        radius: width / 2
        color: gear.ground
    }
}
