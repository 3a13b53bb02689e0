import QtQuick
import Vorle

// A short word on what just happened, gone by itself.
Rectangle {
    id: word

    property string text: ""

    function show(sentence: string) {
        text = sentence;
        opacity = 1;
        away.restart();
    }

    implicitWidth: label.width + 36
    implicitHeight: label.implicitHeight + 18
    radius: height / 2
    color: Theme.ink
    opacity: 0
    visible: opacity > 0
    z: 5
    Accessible.ignored: true // who shows it says it too (Voice)

    Behavior on opacity {
        NumberAnimation {
            duration: Theme.calm
        }
    }
    Loader {
        id: label
        anchors.centerIn: parent
        active: word.text.length > 0
        sourceComponent: Label {
            width: Math.min(implicitWidth, 604)
            text: word.text
            color: Theme.paper
            font.weight: Font.Medium
            elide: Text.ElideRight
            wrapMode: Text.NoWrap
            lineHeight: 1.1
            Accessible.ignored: true
        }
    }
    Timer {
        id: away
        interval: 3500
        onTriggered: word.opacity = 0
    }
}
