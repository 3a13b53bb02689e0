import QtQuick
import Vorle
import Vorle.Models

// The figures, over the runs' reports.
Column {
    id: head

    required property FiguresModel figures
    required property bool reported
    required property string title

    // What stands over a list's rows grows upwards: one who looks at it goes on looking at it.
    property real heightBefore: 0
    property real grown: 0

    onHeightChanged: {
        grown += height - heightBefore;
        heightBefore = height;
        Qt.callLater(stay); // qmllint disable
    }
    function stay() {
        const list = ListView.view;
        if (list !== null && list.contentY <= 0) { // else its rows are looked at, which stay
            list.contentY = Math.min(0, Math.max(list.originY, list.contentY - grown));
        }
        grown = 0;
    }
    // A picture of the figures, at twice their size, with their title and a margin.
    function keepPicture() {
        copy.active = true;
    }

    ReportFigures {
        width: parent.width
        figures: head.figures
    }
    Item {
        width: parent.width
        height: Theme.grown(74)

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
                onClicked: head.keepPicture()
            }
            ActionButton {
                quiet: true
                text: qsTr("Garder en Markdown")
                onClicked: head.figures.keepMarkdown()
            }
        }
        // Out of sight, while a picture is taken of it.
        Loader {
            id: copy
            active: false
            x: -20000
            onLoaded: {
                const path = head.figures.freePath("png");
                const size = Qt.size(2 * item.width, 2 * item.height);
                const asked = item.grabToImage(result => {
                    copy.active = false;
                    head.figures.tellKept(path, path.length > 0 && result.saveToFile(path));
                }, size);
                if (!asked) {
                    copy.active = false;
                    head.figures.tellKept(path, false);
                }
            }
            sourceComponent: Rectangle {
                width: Theme.columnWidth + 2 * Theme.margin
                height: sheet.y + sheet.implicitHeight + Theme.margin
                color: Theme.paper

                Title {
                    x: Theme.margin
                    y: 28
                    text: qsTr("%1 · %2").arg(head.title).arg(head.figures.rangeText)
                    size: Theme.titleOpen
                }
                ReportFigures {
                    id: sheet
                    x: Theme.margin
                    y: 84
                    width: Theme.columnWidth
                    figures: head.figures
                }
            }
        }
    }
}
