import QtQuick
import Vorle
import Vorle.Models

// From which version to which: what it is, what is used, what came out.
Item {
    id: line

    required property topicCard topic
    readonly property string text: topic.versionText

    visible: text.length > 0
    implicitHeight: Theme.scaled(20)
    Accessible.role: Accessible.StaticText
    Accessible.name: text

    component Part: Text {
        font: Theme.bodyFont
        textFormat: Text.PlainText
        lineHeightMode: Text.FixedHeight
        lineHeight: Theme.scaled(20)
        elide: Text.ElideRight
        Accessible.ignored: true
    }

    Part {
        id: what
        width: Math.min(implicitWidth, Math.max(0.3 * line.width, line.width - used.implicitWidth - next.implicitWidth))
        text: line.topic.dependency
        color: Theme.inkSoft
        font: Theme.bodyFontMedium
    }
    Part {
        id: used
        x: what.width
        // What came out is told in any case.
        width: Math.min(implicitWidth, Math.max(0, line.width - x - Math.min(next.implicitWidth, 0.3 * line.width)))
        text: (what.text.length > 0 ? " " : "") + line.topic.currentVersion + (line.topic.currentVersion.length > 0 && next.text.length > 0 ? " → " : "")
        color: Theme.inkFaint
    }
    Part {
        id: next
        x: used.x + used.width
        width: Math.max(0, Math.min(implicitWidth, line.width - x))
        text: line.topic.newVersion
        color: Theme.ink
        font: Theme.bodyFontDemi
    }
}
