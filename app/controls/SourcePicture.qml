import QtQuick
import Vorle

// The picture kept for a source, cut to this place away from the thread that draws. Until it is
// there the place is empty; where there is none, or none that can be shown, it holds the first
// letter of the site. It takes the same room in each case.
Item {
    id: frame

    property string file: "" // in the picture cache; "" for none
    property string site: "" // what its letter is taken from
    property real radius: Theme.radiusButton
    // One pixel is the provider's way to say that there is none.
    readonly property bool ready: picture.status === Image.Ready && picture.implicitWidth > 1
    readonly property bool lacking: file.length === 0 || (picture.status === Image.Ready && !ready)

    function hex(shade: color): string {
        return String(shade).slice(-6);
    }
    function letterOf(address: string): string {
        const words = address.replace(/^[a-z]+:\/\//, "").replace(/^www\./, "");
        return words.slice(0, 1).toUpperCase();
    }

    Rectangle {
        anchors.fill: parent
        radius: frame.radius
        color: Theme.well
        visible: !frame.ready
    }
    Text {
        anchors.centerIn: parent
        visible: frame.lacking
        text: visible ? frame.letterOf(frame.site) : ""
        color: Theme.inkSoft
        font.family: Theme.displayFamily
        font.pixelSize: Math.round(Math.min(frame.height * 0.44, 30))
        font.weight: Font.Bold
        textFormat: Text.PlainText
        Accessible.ignored: true
    }
    Image {
        id: picture
        anchors.fill: parent
        cache: false // the provider keeps the last ones itself
        asynchronous: true
        // The engine makes pixels of the screen of it.
        sourceSize.width: Math.round(frame.width)
        sourceSize.height: Math.round(frame.height)
        source: frame.file.length > 0 && frame.width > 0 && frame.height > 0 ? "image://pictures/" + frame.hex(Theme.well) + "/" + (Theme.dark ? frame.hex(Theme.paper) : "-") + "/" + Math.round(1000 * frame.radius / frame.height) + "/" + encodeURIComponent(frame.file) : ""
        Accessible.ignored: true
    }
}
