import QtQuick
import Vorle
import Vorle.Models

// What a card says first. Closed: its title, then a line of facts with the day at its end. Open:
// the facts, then the title on as many lines as it takes, and room for its picture at the right.
Item {
    id: head

    required property topicCard topic
    property bool open: false
    property bool tight: false
    property bool tiny: false
    readonly property bool pictured: open && !tight && width > 520 && topic.site.length > 0

    readonly property real room: width - (pictured ? Theme.pictureWidth + 20 : 0)
    readonly property real factsHeight: Theme.scaled(18)
    // Where what stands at the end of the upper line begins; the deadline is never cut.
    readonly property real upperEnd: room - (dated.item !== null ? dated.item.implicitWidth + 12 : 0) // qmllint disable
    readonly property real lowerEnd: room - (day.text.length > 0 ? day.implicitWidth + 12 : 0) - (topic.isNew ? 14 : 0)

    implicitHeight: title.implicitHeight + factsHeight + (open ? 2 : 0)

    // One of the short texts beside and under the title.
    component Fact: CardText {
        color: Theme.inkFaint
        font: Theme.noteFont
        lineHeight: head.factsHeight
    }

    CardText {
        id: title
        y: head.open ? head.factsHeight + 2 : 0
        width: Math.max(0, head.open ? head.room : head.upperEnd)
        text: head.topic.title
        color: Theme.ink
        font: head.open && !head.tiny ? Theme.cardTitleOpenFont : Theme.cardTitleFont
        lineHeight: Theme.scaled(head.open && !head.tiny ? 28 : 22)
        maximumLineCount: head.open ? (head.tiny ? 1 : head.tight ? 2 : 4) : 1
        horizontalAlignment: Text.AlignLeft // beside its score, also where it is read from the right
        wrapMode: Text.Wrap
        elide: Text.ElideRight
        Accessible.role: Accessible.Heading
    }
    Fact {
        id: place
        y: facts.y
        width: Math.min(implicitWidth, Math.max(0, facts.end) * (facts.text.length > 0 ? 0.6 : 1))
        text: head.topic.subject
        horizontalAlignment: Text.AlignLeft
        color: Theme.inkSoft
        font: Theme.noteFontMedium
        elide: Text.ElideRight
    }
    Fact {
        id: facts

        readonly property real end: head.open ? head.upperEnd : head.lowerEnd
        readonly property string told: head.open ? head.topic.facts : head.topic.closedFacts

        x: place.text.length > 0 ? place.contentWidth : 0
        y: head.open ? 0 : title.implicitHeight
        width: Math.max(0, end - x)
        visible: width > 40
        text: (place.text.length > 0 ? " · " : "") + told
        elide: Text.ElideRight
        Accessible.name: told
    }
    Fact {
        id: day
        x: head.room - implicitWidth
        y: facts.y
        text: head.open ? "" : head.topic.dateText
    }
    // It came since the last visit.
    Loader {
        active: head.topic.isNew && !head.open
        sourceComponent: Rectangle {
            x: head.lowerEnd + (day.text.length > 0 ? 12 : 7)
            y: facts.y + (head.factsHeight - height) / 2
            width: 7
            height: 7
            radius: 3.5
            color: Theme.accent
        }
    }
    // At the end of the title: that it moved, until when.
    Loader {
        id: dated
        active: head.topic.moved || head.topic.urgencyText.length > 0
        sourceComponent: Item {
            implicitWidth: due.x + due.implicitWidth
            x: head.room - implicitWidth
            y: head.open ? 0 : Math.round((title.implicitHeight - head.factsHeight) / 2) + 1

            Fact {
                id: moved
                text: head.topic.moved ? qsTr("a bougé") : ""
                color: Theme.tintInk
                font: Theme.noteFontDemi
            }
            Fact {
                id: due
                visible: text.length > 0
                x: !head.topic.moved ? 0 : moved.implicitWidth + (text.length > 0 ? 12 : 0)
                text: head.topic.urgencyText
                color: Theme.accent
                font: Theme.noteFontDemi
            }
        }
    }
}
