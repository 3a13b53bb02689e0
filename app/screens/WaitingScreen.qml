import QtQuick
import Vorle

// Stands in the main window's place while a command has the topics: why nothing opens yet, and a
// way out.
Window {
    id: waiting

    property string sentence: ""

    signal givenUp

    title: "vorle"
    color: Theme.paper
    width: 440
    height: body.implicitHeight + 2 * Theme.cardPadding
    minimumWidth: width
    maximumWidth: width
    minimumHeight: height
    maximumHeight: height
    onClosing: givenUp()
    onActiveChanged: if (active) {
        cancel.forceActiveFocus(Qt.TabFocusReason);
    }

    FocusScope {
        anchors.fill: parent
        focus: true
        Accessible.role: Accessible.Dialog
        Accessible.name: waiting.sentence
        Keys.onEscapePressed: waiting.givenUp()

        Column {
            id: body
            x: Theme.cardPadding
            y: Theme.cardPadding
            width: parent.width - 2 * x
            spacing: 18

            Row {
                width: parent.width
                spacing: 16

                Mascot {
                    id: ember
                    size: 46
                }
                Label {
                    width: parent.width - ember.width - parent.spacing
                    anchors.verticalCenter: ember.verticalCenter
                    text: waiting.sentence
                    font.pixelSize: Theme.textLarge
                }
            }
            ActionButton {
                id: cancel
                anchors.right: parent.right
                text: qsTr("Ne pas attendre")
                keys: qsTr("Échap")
                onClicked: waiting.givenUp()
            }
        }
    }
}
