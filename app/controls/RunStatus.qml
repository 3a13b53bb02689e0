import QtQuick
import Vorle
import Vorle.Models

// How far the run is and what it took; while there is none, when the next one comes, and the rest of
// the last one.
Column {
    id: status

    required property RunModel run
    property bool counting: false // with the numbers under the bar

    spacing: 4

    Label {
        width: parent.width
        text: status.run.running ? qsTr("Fouille en cours") : qsTr("Prochaine fouille")
        color: Theme.inkFaint
        font.pixelSize: Theme.textNote
    }
    Title {
        width: parent.width
        visible: !status.run.running
        text: status.run.nextRunText.length > 0 ? status.run.nextRunText : qsTr("quand tu veux")
        size: Theme.titleCard
        Accessible.role: Accessible.StaticText
    }
    Label {
        width: parent.width
        visible: status.run.running
        text: status.run.statusText
        font.weight: Font.DemiBold
        maximumLineCount: 2
        elide: Text.ElideRight
    }
    Rectangle {
        visible: status.run.running
        width: parent.width
        height: 5
        radius: 2.5
        color: Theme.line

        Rectangle {
            width: parent.width * status.run.progress
            height: parent.height
            radius: 2.5
            color: Theme.accent

            Behavior on width {
                NumberAnimation {
                    duration: Theme.calm
                }
            }
        }
    }
    Label {
        width: parent.width
        visible: text.length > 0
        text: status.run.running ? status.run.spentText : status.run.waitingBriefly
        color: Theme.inkFaint
        font.pixelSize: Theme.textNote
    }
    Label {
        width: parent.width
        visible: status.counting && status.run.running && text.length > 0
        text: status.run.countsText
        color: Theme.inkFaint
        font.pixelSize: Theme.textNote
    }
}
