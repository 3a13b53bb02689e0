import QtQuick
import Vorle

// What a topic is, at the head of its page: score, place, facts, title, versions, deadline.
Row {
    id: head

    required property var topic // the list model's roles; null for none

    spacing: 24

    ScoreBadge {
        id: badge
        size: 76
        topic: head.topic
        visible: head.topic !== null
    }
    Column {
        id: column
        width: parent.width - badge.width - parent.spacing
        spacing: 10

        Item {
            width: parent.width
            implicitHeight: Math.max(chip.visible ? chip.implicitHeight : 0, facts.implicitHeight)

            Chip {
                id: chip
                text: head.topic?.place ?? ""
                anchors.verticalCenter: parent.verticalCenter
            }
            Label {
                id: facts
                x: chip.visible ? chip.width + 10 : 0
                width: parent.width - x
                text: head.topic ? [head.topic.kindLabel, head.topic.minutesText, head.topic.publishedOn, head.topic.readLevelText, head.topic.postponedText, head.topic.worthLabel].filter(t => t.length > 0).join("   ·   ") : ""
                color: Theme.inkFaint
                font.pixelSize: Theme.textNote
                lineHeight: 1.2
                anchors.verticalCenter: parent.verticalCenter
            }
        }
        SelectableText {
            width: parent.width
            text: head.topic?.title ?? ""
            font.family: Theme.displayFamily
            font.pixelSize: Theme.titleScreen
            font.weight: Font.Bold
            font.letterSpacing: -0.012 * Theme.titleScreen
            leading: 1.15
            Accessible.role: Accessible.Heading
        }
        VersionLine {
            width: parent.width
            text: head.topic?.versionText ?? ""
        }
        Label {
            visible: text.length > 0
            width: parent.width
            text: head.topic?.urgencySentence ?? ""
            color: Theme.accent
            font.weight: Font.DemiBold
        }
    }
}
