import QtQuick
import Vorle
import Vorle.Models

// An empty or finished section: a sentence set like a page of a book, and what can be done.
Item {
    id: empty

    property string title: ""
    property string text: ""
    property var buttons: [] // CardButton

    signal act(int action)

    TextMetrics {
        id: whole
        font: words.font
        text: empty.text
    }
    Column {
        anchors.centerIn: parent
        anchors.verticalCenterOffset: -24
        width: Math.min(parent.width - 2 * Theme.margin, 460)
        spacing: 16

        Mascot {
            anchors.horizontalCenter: parent.horizontalCenter
        }
        Title {
            width: parent.width
            text: empty.title
            size: Theme.titleOpen
            horizontalAlignment: Text.AlignHCenter
        }
        Label {
            id: words

            // Lines of about one length: a last word of its own looks like a mistake.
            readonly property real lines: Math.max(1, Math.ceil(whole.advanceWidth / parent.width))

            visible: text.length > 0
            anchors.horizontalCenter: parent.horizontalCenter
            width: Math.min(parent.width, Math.ceil(whole.advanceWidth / lines) + 40)
            text: empty.text
            color: Theme.inkSoft
            font.pixelSize: Theme.textLarge
            horizontalAlignment: Text.AlignHCenter
        }
        Row {
            anchors.horizontalCenter: parent.horizontalCenter
            topPadding: 6
            spacing: 10

            Repeater {
                model: empty.buttons

                ActionButton {
                    required property cardButton modelData
                    text: modelData.text
                    primary: modelData.primary
                    onClicked: empty.act(modelData.action)
                }
            }
        }
    }
}
