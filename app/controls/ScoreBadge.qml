import QtQuick
import Vorle
import Vorle.Models

// The disc that shows a score: the one splash of colour, the first thing the eye reads down a list.
Rectangle {
    id: badge

    required property topicCard topic
    property int size: 52

    implicitWidth: size
    implicitHeight: size
    radius: size / 2
    color: Theme.pick(topic.fillLight, topic.fillDark)
    border.width: topic.filled ? 0 : 1.5
    border.color: Theme.pick(topic.accentLight, topic.accentDark)
    Accessible.role: Accessible.StaticText
    Accessible.name: topic.scoreName

    // The top look: a fine ring around the disc.
    Rectangle {
        anchors.fill: parent
        anchors.margins: -4
        radius: width / 2
        visible: badge.topic.gem
        color: "transparent"
        border.width: 1.5
        border.color: Theme.pick(badge.topic.accentLight, badge.topic.accentDark)
        opacity: 0.55
    }
    Text {
        anchors.centerIn: parent
        anchors.verticalCenterOffset: -0.5
        text: badge.topic.digits
        color: Theme.pick(badge.topic.inkLight, badge.topic.inkDark)
        font.family: Theme.displayFamily
        font.pixelSize: Math.round(badge.size * 0.47)
        font.weight: Font.Bold
        textFormat: Text.PlainText
        Accessible.ignored: true
    }
    // Nothing could be read: no digits, a dash.
    Rectangle {
        anchors.centerIn: parent
        visible: badge.topic.digits.length === 0
        width: badge.size * 0.24
        height: 2
        radius: 1
        color: Theme.pick(badge.topic.inkLight, badge.topic.inkDark)
    }
}
