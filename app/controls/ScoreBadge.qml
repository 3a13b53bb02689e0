import QtQuick
import Vorle
import Vorle.Models

// The disc that shows a score: the one splash of colour, the first thing the eye reads down a list.
Rectangle {
    id: badge

    required property badgeLook look
    property int size: 52

    implicitWidth: size
    implicitHeight: size
    radius: size / 2
    color: Theme.pick(look.fillLight, look.fillDark)
    border.width: look.filled ? 0 : 1.5
    border.color: Theme.pick(look.accentLight, look.accentDark)
    Accessible.role: Accessible.StaticText
    Accessible.name: look.name

    // The top look: a fine ring around the disc.
    Loader {
        active: badge.look.gem
        sourceComponent: Rectangle {
            x: -4
            y: -4
            width: badge.width + 8
            height: badge.height + 8
            radius: width / 2
            color: "transparent"
            border.width: 1.5
            border.color: badge.border.color
            opacity: 0.55
        }
    }
    Text {
        anchors.centerIn: parent
        anchors.verticalCenterOffset: -0.5
        text: badge.look.digits
        color: Theme.pick(badge.look.inkLight, badge.look.inkDark)
        font.family: Theme.displayFamily
        scale: Math.min(1, (badge.size - 8) / implicitWidth) // a file may hold scores of ten digits
        font.pixelSize: Math.round(badge.size * 0.47)
        font.weight: Font.Bold
        textFormat: Text.PlainText
        Accessible.ignored: true
    }
    // Nothing could be read: no digits, a dash.
    Loader {
        active: badge.look.digits.length === 0
        anchors.centerIn: parent
        sourceComponent: Rectangle {
            implicitWidth: badge.size * 0.24
            implicitHeight: 2
            radius: 1
            color: Theme.pick(badge.look.inkLight, badge.look.inkDark)
        }
    }
}
