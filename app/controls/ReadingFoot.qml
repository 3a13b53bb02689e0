import QtQuick
import Vorle
import Vorle.Models

// What can be decided from the reading page, and how to leave it.
Rectangle {
    id: foot

    property var actions: [] // CardButton
    property string hint: ""
    property string worth: "" // the verdict given

    signal act(int action)

    height: Theme.grown(92)
    color: Theme.paper

    Rectangle {
        width: parent.width
        height: 1
        color: Theme.line
    }
    Row {
        anchors.horizontalCenter: parent.horizontalCenter
        y: 12
        spacing: 10

        Repeater {
            model: foot.actions

            ActionButton {
                required property cardButton modelData
                text: modelData.text
                keys: modelData.keys
                primary: modelData.primary
                given: modelData.worth.length > 0 && modelData.worth === foot.worth
                onClicked: foot.act(modelData.action)
            }
        }
    }
    Label {
        anchors.horizontalCenter: parent.horizontalCenter
        anchors.bottom: parent.bottom
        anchors.bottomMargin: 10
        width: parent.width - 24
        horizontalAlignment: Text.AlignHCenter
        text: foot.hint
        color: Theme.inkFaint
        font.pixelSize: Theme.textNote
        fontSizeMode: Text.HorizontalFit
        minimumPixelSize: 9
        wrapMode: Text.NoWrap
    }
}
