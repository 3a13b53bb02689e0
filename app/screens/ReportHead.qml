import QtQuick
import Vorle
import Vorle.Models

// The figures, over the runs' reports.
Column {
    id: head

    required property FiguresModel figures
    required property bool reported
    readonly property Item picture: sheet

    signal pictureAsked

    // With its ground, so that a picture of it stands on paper.
    Rectangle {
        id: sheet
        width: parent.width
        height: page.implicitHeight
        color: Theme.paper

        ReportFigures {
            id: page
            width: parent.width
            figures: head.figures
        }
    }
    Item {
        width: parent.width
        height: 74

        Title {
            anchors.bottom: parent.bottom
            anchors.bottomMargin: 12
            visible: head.reported
            text: qsTr("Comptes rendus")
        }
        Row {
            anchors.right: parent.right
            anchors.top: parent.top
            anchors.topMargin: 8
            spacing: 4

            ActionButton {
                quiet: true
                text: qsTr("Garder en image")
                onClicked: head.pictureAsked()
            }
            ActionButton {
                quiet: true
                text: qsTr("Garder en Markdown")
                onClicked: head.figures.keepMarkdown()
            }
        }
    }
}
