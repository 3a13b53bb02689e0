import QtQuick
import Vorle

// The first letter of a name on a colour of its own: the same name always has the same one.
Rectangle {
    id: tile

    required property string letter
    required property string seed
    property int size: 26
    property bool drawn: true // else something stands in its place
    readonly property list<color> colors: ["#2F5D50", "#7A5C12", "#5B3A6B", "#2B5F9E", "#8A3B2A", "#3F6B2C", "#8C2F5B", "#3C4A8C"]

    function hash(words: string): int {
        let sum = 7;
        for (let i = 0; i < words.length; ++i) {
            sum = (sum * 31 + words.charCodeAt(i)) % 65521;
        }
        return sum;
    }

    implicitWidth: size
    implicitHeight: size
    radius: size * 0.3
    color: drawn ? colors[hash(seed) % colors.length] : "transparent"

    Text {
        anchors.centerIn: parent
        visible: tile.drawn
        text: tile.letter
        color: "#FFFFFF"
        font.family: Theme.displayFamily
        font.pixelSize: Math.round(tile.size * 0.58)
        font.weight: Font.Bold
        textFormat: Text.PlainText
        Accessible.ignored: true
    }
}
