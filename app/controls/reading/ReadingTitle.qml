import QtQuick
import Vorle
import Vorle.Models

// What a topic is, at the head of its page: score, place, facts, title, versions, deadline.
Row {
    id: head

    required property topicCard topic
    readonly property bool narrow: width < 480

    spacing: narrow ? 16 : 24

    ScoreBadge {
        id: badge
        size: head.narrow ? 48 : 64
        look: head.topic.badge
        visible: head.topic.topicId !== ""
    }
    Column {
        width: parent.width - badge.width - parent.spacing
        spacing: 8

        Text {
            width: parent.width
            text: head.topic.subject.length > 0 ? "<b>" + escaped(head.topic.subject) + "</b> · " + escaped(head.topic.facts) : escaped(head.topic.facts)
            textFormat: Text.StyledText
            color: Theme.inkFaint
            font.family: Theme.textFamily
            font.pixelSize: Theme.textNote
            lineHeight: 1.3
            wrapMode: Text.Wrap
            Accessible.role: Accessible.StaticText
            Accessible.name: (head.topic.subject.length > 0 ? head.topic.subject + " · " : "") + head.topic.facts

            function escaped(words: string): string {
                return words.replace(/&/g, "&amp;").replace(/</g, "&lt;").replace(/>/g, "&gt;");
            }
        }
        SelectableText {
            // A long one is read, not looked at.
            readonly property int size: text.length > 140 ? Theme.titleCard : text.length > 90 || head.narrow ? Theme.scaled(22) : Theme.scaled(28)

            width: parent.width
            words: head.topic.title
            font.family: Theme.displayFamily
            font.pixelSize: size
            font.weight: Font.Bold
            font.letterSpacing: -0.014 * size
            leading: 1
            Accessible.role: Accessible.Heading
        }
        SelectableText {
            visible: text.length > 0
            width: parent.width
            words: head.topic.versionText
            color: Theme.inkSoft
            font.pixelSize: Theme.textMenu
            font.weight: Font.Medium
            leading: 1.2
        }
        SelectableText {
            visible: text.length > 0
            width: parent.width
            words: head.topic.urgencySentence
            color: Theme.tintInk
            font.weight: Font.DemiBold
        }
        // Why a captured link could not be judged.
        SelectableText {
            visible: text.length > 0
            width: parent.width
            words: head.topic.captureProblem
            color: Theme.tintInk
        }
    }
}
