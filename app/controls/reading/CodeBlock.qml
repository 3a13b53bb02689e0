import QtQuick
import Vorle

// Code as it was written, on lines of its own: wide lines are scrolled, all of it is copied.
Rectangle {
    id: block

    property string code: ""
    readonly property bool low: lines.lineCount < 2 // the button stands beside the line

    implicitHeight: Math.max(lines.implicitHeight + 24, copy.implicitHeight + 12)
    radius: Theme.radiusButton
    color: Theme.sunken
    border.width: 1
    border.color: Theme.line

    Flickable {
        anchors.fill: parent
        anchors.margins: 12
        anchors.rightMargin: copy.width + 18
        contentWidth: lines.implicitWidth
        contentHeight: height
        flickableDirection: Flickable.HorizontalFlick
        boundsBehavior: Flickable.StopAtBounds
        clip: true

        SelectableText {
            id: lines
            y: block.low ? (parent.height - implicitHeight) / 2 : 0
            words: block.code
            font.family: Theme.codeFamily
            font.pixelSize: Theme.textNote
            wrapMode: TextEdit.NoWrap
            leading: 1.4
        }
    }
    CopyButton {
        id: copy
        anchors.right: parent.right
        anchors.top: parent.top
        anchors.margins: 6
        copied: block.code
    }
}
