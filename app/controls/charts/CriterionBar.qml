import QtQuick
import Vorle

// One grade of the judge, from 0 to 10.
Item {
    id: bar

    required property string name
    required property int grade

    implicitHeight: Theme.grown(24)
    Accessible.role: Accessible.StaticText
    Accessible.name: qsTr("%1 : %2 sur 10").arg(name).arg(grade)

    Label {
        id: word
        width: Theme.grown(118)
        anchors.verticalCenter: parent.verticalCenter
        text: bar.name
        color: Theme.inkSoft
        Accessible.ignored: true
    }
    Rectangle {
        x: Theme.grown(118) + 8
        width: parent.width - x - 40
        height: 5
        radius: 2.5
        anchors.verticalCenter: parent.verticalCenter
        color: Theme.line

        Rectangle {
            width: parent.width * Math.max(0, Math.min(10, bar.grade)) / 10
            height: parent.height
            radius: parent.radius
            color: Theme.inkSoft
        }
    }
    Text {
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        text: bar.grade
        color: Theme.ink
        font.family: Theme.displayFamily
        font.pixelSize: Theme.textMenu
        font.weight: Font.Bold
        Accessible.ignored: true
    }
}
