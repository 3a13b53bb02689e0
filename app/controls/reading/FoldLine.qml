import QtQuick
import Vorle

// A chapter folded into one line: its name, what it comes to, and the rest once it is opened.
Column {
    id: fold

    required property string name
    property string gist: ""
    property string mark: "" // at the right: what the gist comes to
    property bool opened: false
    default property alias content: inside.data

    Rectangle {
        width: parent.width
        height: 1
        color: Theme.line
    }
    Press {
        id: line
        width: parent.width
        height: Theme.grown(50)
        text: fold.name
        Accessible.role: Accessible.Button
        Accessible.name: fold.gist.length > 0 ? qsTr("%1 : %2").arg(fold.name).arg(fold.gist) : fold.name
        Accessible.description: fold.opened ? qsTr("déplié") : qsTr("replié")
        Accessible.onPressAction: clicked()
        onClicked: fold.opened = !fold.opened

        Rectangle {
            x: -10
            width: line.width + 20
            height: parent.height
            radius: Theme.radiusButton
            color: line.hovered ? Theme.sunken : "transparent"

            FocusRing {
                radius: parent.radius + 3
                shown: line.visualFocus
            }
        }
        Item {
            anchors.fill: parent

            Title {
                id: title
                anchors.verticalCenter: parent.verticalCenter
                text: fold.name
                color: Theme.inkFaint
                size: Theme.textMenu
                wrapMode: Text.NoWrap
                font.weight: Font.DemiBold
                Accessible.ignored: true
            }
            Label {
                x: title.implicitWidth + 14
                width: mark.x - x - 12
                anchors.verticalCenter: parent.verticalCenter
                visible: width > 60
                text: fold.gist
                color: Theme.inkFaint
                font.pixelSize: Theme.textNote
                lineHeight: 1
                wrapMode: Text.NoWrap
                elide: Text.ElideRight
                Accessible.ignored: true
            }
            Label {
                id: mark
                anchors.right: arrow.left
                anchors.rightMargin: 14
                anchors.verticalCenter: parent.verticalCenter
                text: fold.mark
                color: Theme.inkSoft
                font.pixelSize: Theme.textNote
                font.weight: Font.Medium
                lineHeight: 1
                wrapMode: Text.NoWrap
                Accessible.ignored: true
            }
            // Two strokes that meet: down, or up once it stands open.
            Item {
                id: arrow
                anchors.right: parent.right
                anchors.verticalCenter: parent.verticalCenter
                width: 12
                height: 8
                rotation: fold.opened ? 180 : 0

                Repeater {
                    model: 2

                    Rectangle {
                        required property int index
                        x: index === 0 ? 0 : 4.5
                        y: 3
                        width: 7
                        height: 1.6
                        radius: 0.8
                        color: Theme.inkSoft
                        rotation: index === 0 ? 45 : -45
                        antialiasing: true
                    }
                }
            }
        }
    }
    Column {
        id: inside
        width: parent.width
        visible: fold.opened
        spacing: 8
        topPadding: 6
        bottomPadding: 16
    }
    Rectangle {
        width: parent.width
        height: 1
        color: Theme.line
    }
}
