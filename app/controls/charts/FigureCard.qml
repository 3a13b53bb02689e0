import QtQuick
import Vorle

// A chart with what it says: the sentence first, then what is drawn, then the drawing.
Rectangle {
    id: card

    required property string sentence
    required property string inWords // the drawing's figures, for who does not see it
    property string caption: ""
    property alias legend: marks.data // of LegendMark
    property string note: "" // under the drawing
    default property alias drawing: drawing.data

    implicitHeight: column.implicitHeight + 2 * Theme.cardPadding - 4
    radius: Theme.radiusCard
    color: Theme.card
    border.width: 1
    border.color: Theme.line
    Accessible.role: Accessible.Graphic
    Accessible.name: sentence
    Accessible.description: note.length > 0 ? inWords + ". " + note : inWords

    Column {
        id: column
        x: Theme.cardPadding
        y: Theme.cardPadding - 4
        width: parent.width - 2 * Theme.cardPadding
        spacing: 8

        Label {
            width: parent.width
            text: card.sentence
            font.pixelSize: Theme.textMenu
            font.weight: Font.DemiBold
            Accessible.ignored: true
        }
        Item {
            width: parent.width
            implicitHeight: Math.max(caption.implicitHeight, marks.implicitHeight)
            visible: card.caption.length > 0

            Label {
                id: caption
                text: card.caption
                color: Theme.inkFaint
                font.pixelSize: Theme.textNote
                Accessible.ignored: true
            }
            Row {
                id: marks
                anchors.right: parent.right
                spacing: 12
            }
        }
        Item {
            id: drawing
            width: parent.width
            implicitHeight: children.length > 0 ? children[0].implicitHeight : 0 // qmllint disable
        }
        Label {
            width: parent.width
            visible: card.note.length > 0
            text: card.note
            color: Theme.inkSoft
            font.pixelSize: Theme.textNote
            Accessible.ignored: true
        }
    }
}
