import QtQuick
import QtQuick.Templates as T
import Vorle

// One source, with its picture when there is one; opens in the browser.
T.AbstractButton {
    id: row

    required property string name
    required property string url
    property string picture: ""
    property string adds: ""

    implicitHeight: Math.max(Theme.hit + 8, words.implicitHeight + 14)
    hoverEnabled: true
    text: name
    Accessible.name: name
    Accessible.description: url
    Accessible.onPressAction: clicked()
    Keys.onReturnPressed: clicked()

    background: Rectangle {
        radius: Theme.radiusButton
        color: row.hovered ? Theme.sunken : "transparent"

        FocusRing {
            radius: parent.radius + 3
            shown: row.visualFocus
        }
    }
    contentItem: Item {
        Rectangle {
            id: frame
            x: 6
            width: row.picture.length > 0 ? 56 : 6
            height: row.picture.length > 0 ? 36 : 6
            radius: row.picture.length > 0 ? 6 : 3
            anchors.verticalCenter: parent.verticalCenter
            color: row.picture.length > 0 ? Theme.sunken : Theme.inkFaint
            clip: true

            Image {
                anchors.fill: parent
                source: row.picture
                sourceSize.width: 224
                fillMode: Image.PreserveAspectCrop
                asynchronous: true
                visible: status === Image.Ready
            }
        }
        Column {
            id: words
            x: frame.x + frame.width + 14
            width: parent.width - x - 6
            anchors.verticalCenter: parent.verticalCenter
            spacing: 2

            Label {
                width: parent.width
                text: row.name
                font.weight: Font.Medium
                font.underline: row.hovered
                elide: Text.ElideRight
                wrapMode: Text.NoWrap
                lineHeight: 1.15
                Accessible.ignored: true
            }
            Label {
                width: parent.width
                text: row.adds.length > 0 ? row.adds : row.url
                color: Theme.inkFaint
                font.pixelSize: Theme.textSmall
                maximumLineCount: row.adds.length > 0 ? 3 : 1
                wrapMode: row.adds.length > 0 ? Text.Wrap : Text.NoWrap
                elide: Text.ElideRight
                lineHeight: 1.2
                Accessible.ignored: true
            }
        }
    }
}
