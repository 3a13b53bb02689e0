import QtQuick
import Vorle
import Vorle.Models

// What the runs took: the last ones, and by step.
Rectangle {
    id: card

    required property FiguresModel figures

    implicitHeight: Math.max(words.implicitHeight, last.implicitHeight) + 2 * 18
    radius: Theme.radiusCard
    color: Theme.card
    border.width: 1
    border.color: Theme.line

    Column {
        id: words
        x: Theme.cardPadding
        y: 18
        width: parent.width - last.width - 3 * Theme.cardPadding
        spacing: 2

        Label {
            width: parent.width
            text: card.figures.runsSentence
            font.pixelSize: Theme.textMenu
            font.weight: Font.DemiBold
        }
        Label {
            width: parent.width
            visible: text.length > 0
            text: card.figures.runsNote
            color: Theme.inkFaint
            font.pixelSize: Theme.textNote
            bottomPadding: 6
        }
        Repeater {
            model: card.figures.steps

            Item {
                id: step

                required property figureCount modelData

                width: words.width
                implicitHeight: name.implicitHeight
                Accessible.role: Accessible.StaticText
                Accessible.name: modelData.label + ", " + modelData.value

                Label {
                    id: name
                    width: Theme.grown(130)
                    text: step.modelData.label
                    color: Theme.inkSoft
                    font.pixelSize: Theme.textNote
                    Accessible.ignored: true
                }
                Label {
                    x: 138
                    width: parent.width - x
                    text: step.modelData.value
                    color: Theme.inkSoft
                    font.pixelSize: Theme.textNote
                    elide: Text.ElideRight
                    wrapMode: Text.NoWrap
                    Accessible.ignored: true
                }
            }
        }
    }
    Row {
        id: last
        anchors.right: parent.right
        anchors.rightMargin: Theme.cardPadding
        y: 18
        spacing: 28

        Repeater {
            model: card.figures.runs

            Column {
                id: run

                required property figureCount modelData

                Accessible.role: Accessible.StaticText
                Accessible.name: modelData.label + ", " + modelData.value

                Label {
                    anchors.horizontalCenter: parent.horizontalCenter
                    text: run.modelData.value
                    font.pixelSize: Theme.textNote
                    wrapMode: Text.NoWrap
                    Accessible.ignored: true
                }
                Label {
                    anchors.horizontalCenter: parent.horizontalCenter
                    text: run.modelData.label
                    color: Theme.inkFaint
                    font.pixelSize: Theme.textSmall
                    wrapMode: Text.NoWrap
                    Accessible.ignored: true
                }
            }
        }
    }
}
