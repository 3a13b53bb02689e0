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
        id: buttons
        anchors.horizontalCenter: parent.horizontalCenter
        y: 12
        spacing: foot.width < 560 ? 6 : 10

        readonly property bool crowded: needed() > foot.width - 24

        // With their keys; without them they fit anywhere.
        function needed(): real {
            let sum = -spacing;
            for (let i = 0; i < all.count; ++i) {
                sum += ((all.itemAt(i) as ActionButton)?.fullWidth() ?? 0) + spacing;
            }
            return sum;
        }

        Repeater {
            id: all
            model: foot.actions

            ActionButton {
                required property cardButton modelData
                text: modelData.text
                keys: modelData.keys
                keysShown: !buttons.crowded
                leftPadding: foot.width >= 560 ? 15 : Theme.textScale > 110 ? 7 : 10
                font.pixelSize: foot.width < 560 && Theme.textScale > 110 ? Theme.textNote : Theme.textBody
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
