import QtQuick
import Vorle

// A small ember that keeps watch: it opens its eyes while a run is under way. Where it is `alive` it
// is up for a while after somebody was there, blinks now and then, and looks where they are about to
// press; then it dozes off, and nothing wakes up for it any more.
Item {
    id: mascot

    property bool awake: false
    property bool alive: false
    property int size: 46
    property color halo: Theme.accentTint
    property point look: Qt.point(0, 0) // where to, each from −1 to 1

    readonly property bool stirs: alive && visible && Window.active && !Theme.reducedMotion
    property bool up: false
    property bool blinks: false
    readonly property bool open: awake || (stirs && up && !blinks)

    function rouse() {
        if (stirs) {
            up = true;
            doze.restart();
        }
    }

    implicitWidth: size
    implicitHeight: size
    Accessible.ignored: true
    onStirsChanged: {
        up = false;
        rouse();
    }
    onLookChanged: rouse()
    Component.onCompleted: rouse()

    Timer {
        id: doze
        interval: Theme.dozes
        running: false
        onTriggered: mascot.up = false
    }
    Timer {
        running: mascot.stirs && mascot.up
        interval: mascot.blinks ? Theme.quick : pause
        repeat: true
        onTriggered: {
            mascot.blinks = !mascot.blinks;
            pause = Theme.blinkPause * (0.7 + 0.6 * Math.random());
        }

        property int pause: Theme.blinkPause
    }
    Rectangle {
        anchors.centerIn: parent
        width: mascot.size
        height: mascot.size
        radius: width / 2
        color: mascot.halo
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
                height: mascot.open ? width * 1.6 : 2
                radius: width / 2
                x: parent.width * (index === 0 ? 0.34 : 0.66) - width / 2 + eyes.x
                y: parent.height * 0.48 - height / 2 + eyes.y
                color: Theme.accentInk
            }
        }
    }
    QtObject {
        id: eyes

        property real x: mascot.stirs ? mascot.look.x * mascot.size * 0.06 : 0
        property real y: mascot.stirs ? mascot.look.y * mascot.size * 0.06 : 0

        Behavior on x {
            NumberAnimation {
                duration: Theme.quick
            }
        }
        Behavior on y {
            NumberAnimation {
                duration: Theme.quick
            }
        }
    }
}
