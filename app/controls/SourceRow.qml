import QtQuick
import Vorle

// One source, with its picture when there is one; opens in the browser. A plain item, as SideItem
// is: this is a link.
Item {
    id: row

    required property string name
    required property string url
    property string address: "" // the url as it is shown
    property string picture: ""
    property string adds: ""
    readonly property bool pictured: picture.length > 0

    signal clicked

    implicitHeight: Math.max(Theme.hit + 8, words.implicitHeight + 14)
    activeFocusOnTab: true
    Accessible.role: Accessible.Link
    Accessible.name: name
    Accessible.description: address
    Accessible.focusable: true
    Accessible.onPressAction: clicked()
    Keys.onReturnPressed: event => press(event)
    Keys.onEnterPressed: event => press(event)

    // With another key it is a shortcut, and held down it is one press.
    function press(event: KeyEvent) {
        if (event.isAutoRepeat || (event.modifiers & ~Qt.KeypadModifier)) {
            event.accepted = false;
        } else {
            clicked();
        }
    }

    HoverHandler {
        id: hover
        cursorShape: Qt.PointingHandCursor
    }
    TapHandler {
        onTapped: row.clicked()
    }
    Rectangle {
        anchors.fill: parent
        radius: Theme.radiusButton
        color: hover.hovered ? Theme.sunken : "transparent"

        FocusRing {
            radius: parent.radius + 3
            shown: row.activeFocus
        }
    }
    Rectangle {
        id: frame
        x: 6
        width: row.pictured ? 56 : 6
        height: row.pictured ? 36 : 6
        radius: row.pictured ? 6 : 3
        anchors.verticalCenter: parent.verticalCenter
        color: row.pictured ? Theme.sunken : Theme.inkFaint
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
            font.underline: hover.hovered
            elide: Text.ElideRight
            wrapMode: Text.NoWrap
            lineHeight: 1.15
            Accessible.ignored: true
        }
        Label {
            width: parent.width
            text: row.adds.length > 0 ? row.adds : row.address
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
