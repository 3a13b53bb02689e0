import QtQuick
import Vorle
import Vorle.Models

// What a topic is, at the head of its page: score, place, facts, title, versions, deadline.
Row {
    id: head

    required property topicCard topic

    spacing: 24

    ScoreBadge {
        id: badge
        size: 76
        look: head.topic.badge
        visible: head.topic.topicId !== ""
    }
    Column {
        id: column
        width: parent.width - badge.width - parent.spacing
        spacing: 10

        Flow {
            width: parent.width
            spacing: 10

            Chip {
                text: head.topic.subject
            }
            Label {
                width: Math.min(implicitWidth, parent.width)
                topPadding: 3
                text: head.topic.facts
                color: Theme.inkFaint
                font.pixelSize: Theme.textNote
                lineHeight: 1.2
            }
        }
        SelectableText {
            // A long one is read, not looked at.
            readonly property int size: text.length > 90 ? Theme.titleOpen : Theme.titleScreen

            width: parent.width
            text: head.topic.title
            font.family: Theme.displayFamily
            font.pixelSize: size
            font.weight: Font.Bold
            font.letterSpacing: -0.012 * size
            leading: 1.15
            Accessible.role: Accessible.Heading
        }
        SelectableText {
            visible: text.length > 0
            width: parent.width
            text: head.topic.versionText
            color: Theme.inkSoft
            font.weight: Font.DemiBold
            leading: 1.15
        }
        SelectableText {
            visible: text.length > 0
            width: parent.width
            text: head.topic.urgencySentence
            color: Theme.accent
            font.weight: Font.DemiBold
        }
        // Why a captured link could not be judged.
        SelectableText {
            visible: text.length > 0
            width: parent.width
            text: head.topic.captureProblem
            color: Theme.tintInk
        }
    }
}
