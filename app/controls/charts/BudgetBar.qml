import QtQuick
import Vorle
import Vorle.Models

// The week's time: done, planned, and what is left.
Item {
    id: bar

    required property ProgramBudget model
    readonly property int done: model.done
    readonly property int planned: model.planned
    readonly property int budget: model.budget
    property string text: ""

    implicitHeight: 6 + (text.length > 0 ? words.implicitHeight + 8 : 0)
    Accessible.role: Accessible.ProgressBar
    Accessible.name: text.length > 0 ? text : qsTr("Temps de la semaine")

    readonly property real whole: Math.max(1, budget, done + planned)

    Label {
        id: words
        width: parent.width
        text: bar.text
        visible: text.length > 0
        color: Theme.inkSoft
        Accessible.ignored: true
    }
    Rectangle {
        anchors.bottom: parent.bottom
        width: parent.width
        height: 6
        radius: 3
        color: Theme.line

        Rectangle {
            width: parent.width * Math.min(1, (bar.done + bar.planned) / bar.whole)
            height: parent.height
            radius: 3
            color: Theme.inkFaint
            opacity: 0.55
        }
        Rectangle {
            width: parent.width * Math.min(1, bar.done / bar.whole)
            height: parent.height
            radius: 3
            color: Theme.accent
        }
    }
}
