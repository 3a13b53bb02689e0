import QtQuick
import Vorle

// A chart with what it says: the sentence first, then what is drawn, then the drawing.
Rectangle {
    id: card

    required property string sentence
    required property var inWords // texts: the drawing's figures, row by row, for who does not see it
    property string caption: ""
    property alias legend: marks.data // of LegendMark
    property string note: "" // under the drawing
    default property alias drawing: drawing.data

    implicitHeight: column.implicitHeight + 2 * Theme.cardPadding - 4
    radius: Theme.radiusCard
    color: Theme.card
    border.width: 1
    border.color: Theme.line
    Accessible.role: Accessible.Grouping
    Accessible.name: card.caption

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
            Accessible.role: Accessible.Heading
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
        }
    }
    // Its figures, for who does not see them: a row for each line of a table.
    Item {
        id: table
        x: column.x
        y: column.y + drawing.y
        width: column.width
        height: drawing.height
        visible: card.inWords.length > 0
        Accessible.role: Accessible.List
        Accessible.name: qsTr("En chiffres")

        Repeater {
            model: card.inWords

            Item {
                required property string modelData
                required property int index

                y: index * height
                width: table.width
                height: table.height / card.inWords.length
                Accessible.role: Accessible.ListItem
                Accessible.name: modelData
            }
        }
    }
}
