import QtQuick
import Vorle

// One part of the reading notes.
Column {
    id: part

    required property string title
    required property string body
    property bool strong: false
    property bool code: false // kept as it is, to be copied

    spacing: part.code ? 8 : 4

    SelectableText {
        width: parent.width
        visible: text.length > 0
        text: part.title
        font.weight: Font.DemiBold
        font.pixelSize: part.strong ? Theme.textLarge : Theme.textBody
    }
    SelectableText {
        width: parent.width
        visible: !part.code
        text: part.code ? "" : part.body
        color: Theme.inkSoft
        font.pixelSize: part.strong ? Theme.textLarge : Theme.textBody
        leading: 1.45
    }
    Rectangle {
        visible: part.code
        width: parent.width
        height: visible ? lines.implicitHeight + 24 : 0
        radius: Theme.radiusButton
        color: Theme.sunken
        border.width: 1
        border.color: Theme.line

        Flickable {
            anchors.fill: parent
            anchors.margins: 12
            contentWidth: lines.implicitWidth
            flickableDirection: Flickable.HorizontalFlick
            boundsBehavior: Flickable.StopAtBounds
            clip: true

            SelectableText {
                id: lines
                text: part.code ? part.body : ""
                font.family: Theme.codeFamily
                font.pixelSize: Theme.textNote
                wrapMode: TextEdit.NoWrap
                leading: 1.4
            }
        }
    }
}
