import QtQuick
import Vorle

// Asks before what cannot be undone. The keyboard stands on what changes nothing.
Panel {
    id: panel

    property string question: ""
    property string text: ""
    property string confirmText: ""
    property string keepText: ""

    signal confirmed

    name: question
    bodyHeight: body.implicitHeight
    sheetWidth: 480
    onShownChanged: {
        if (shown) {
            keep.forceActiveFocus(Qt.TabFocusReason);
        }
    }

    Column {
        id: body
        width: parent.width
        spacing: 14

        Title {
            width: parent.width
            text: panel.question
            size: Theme.titleOpen
        }
        Label {
            width: parent.width
            text: panel.text
            color: Theme.inkSoft
        }
        Flow {
            width: parent.width
            layoutDirection: Qt.RightToLeft
            spacing: 10

            ActionButton {
                id: keep
                text: panel.keepText
                keys: qsTr("Échap")
                primary: true
                onClicked: panel.closed()
            }
            ActionButton {
                text: panel.confirmText
                onClicked: {
                    panel.confirmed();
                    panel.closed();
                }
            }
        }
    }
}
