import QtQuick
import Vorle

// An app's icon, or its letter until there is one.
LetterTile {
    id: tile

    property string icon: "" // as AppsModel has it

    drawn: picture.status !== Image.Ready || picture.implicitWidth <= 1

    Image {
        id: picture
        anchors.fill: parent
        asynchronous: true
        mipmap: true
        fillMode: Image.PreserveAspectFit
        source: tile.icon.length > 0 ? "image://apps/" + encodeURIComponent(tile.icon) : ""
        sourceSize.width: 64
        sourceSize.height: 64
        Accessible.ignored: true
    }
}
