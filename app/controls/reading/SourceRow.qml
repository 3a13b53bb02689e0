import QtQuick
import Vorle

// One source, with its picture or its site's letter; opens in the browser. A plain item, as
// SideItem is: this is a link.
Item {
    id: row

    required property string name
    required property string url
    property string address: "" // the url as it is shown
    property string picture: "" // its file in the picture cache
    property string adds: ""
    property bool pictured: true // else it stands without a place for one

    signal clicked

    implicitHeight: Math.max(pictured ? 52 : Theme.hit + 8, words.implicitHeight + 14)
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
        x: -10
        width: parent.width + 20
        height: parent.height
        radius: Theme.radiusButton
        color: hover.hovered ? Theme.hover : "transparent"

        FocusRing {
            radius: parent.radius + 3
            shown: row.activeFocus
        }
    }
    Loader {
        id: frame
        width: row.pictured ? 56 : 6
        height: row.pictured ? 36 : 6
        anchors.verticalCenter: parent.verticalCenter
        sourceComponent: row.pictured ? thumbnail : dot

        Component {
            id: thumbnail

            SourcePicture {
                file: row.picture
                site: row.address
                radius: 8
            }
        }
        Component {
            id: dot

            Rectangle {
                radius: 3
                color: Theme.inkFaint
            }
        }
    }
    Column {
        id: words
        x: frame.width + 14
        width: parent.width - x
        anchors.verticalCenter: parent.verticalCenter
        spacing: 2

        Label {
            width: parent.width
            text: row.name
            font.weight: Font.DemiBold
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
