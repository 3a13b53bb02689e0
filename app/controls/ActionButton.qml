import QtQuick
import Vorle

// A button that shows the key which does the same.
Press {
    id: button

    property bool keysShown: true // where there is room
    property bool primary: false
    property bool quiet: false // words alone, no outline
    property bool given: false // what it says holds already
    property bool usable: true // what lies behind a panel is not enabled, and looks as ever
    property real leftPadding: quiet ? 8 : 15
    property real rightPadding: keys.length > 0 && keysShown ? 10 : leftPadding
    property alias font: words.font

    readonly property color inkNow: !usable ? Theme.inkFaint : primary ? Theme.accentInk : given ? Theme.tintInk : Theme.ink

    implicitWidth: Math.max(Theme.hit, line.implicitWidth + leftPadding + rightPadding)
    implicitHeight: Math.max(Theme.hit + 10, line.implicitHeight)
    enabled: usable
    Accessible.role: Accessible.Button
    Accessible.name: given ? qsTr("%1, choisi").arg(text) : text
    Accessible.description: keys.length > 0 ? qsTr("Touche %1").arg(keys) : ""
    Accessible.onPressAction: clicked()

    // With its keys, whether they are shown or not.
    function fullWidth(): real {
        const row = words.implicitWidth + (keys.length > 0 ? line.spacing + cap.implicitWidth : 0);
        return Math.max(Theme.hit, row + leftPadding + (keys.length > 0 ? 10 : leftPadding));
    }

    Rectangle {
        anchors.fill: parent
        radius: Theme.radiusButton
        color: !button.usable ? (button.quiet ? "transparent" : Theme.well)
                              : button.primary ? (button.down ? Theme.accentDown : Theme.accent)
                              : button.down ? Theme.sunken : button.given ? Theme.accentTint
                                            : button.hovered && !button.quiet ? Theme.raised : "transparent"
        border.width: !button.usable || button.primary || button.quiet ? 0 : 1
        border.color: button.given ? Theme.tintInk : button.hovered ? Theme.inkFaint : Theme.line

        FocusRing {
            radius: parent.radius + 3
            shown: button.visualFocus
        }
    }
    Row {
        id: line
        x: button.leftPadding + Math.round((button.width - button.leftPadding - button.rightPadding - width) / 2)
        anchors.verticalCenter: parent.verticalCenter
        spacing: 9

        Text {
            id: words
            text: button.text
            font.family: Theme.textFamily
            font.pixelSize: Theme.textBody
            font.weight: Font.DemiBold
            color: button.inkNow
            textFormat: Text.PlainText
            anchors.verticalCenter: parent.verticalCenter
            Accessible.ignored: true
        }
        KeyCap {
            id: cap
            keys: button.keys
            visible: button.keysShown && keys.length > 0
            bare: button.keys.length > 1
            ink: !button.usable ? Theme.inkFaint : button.primary ? Theme.accentInk : button.given ? Theme.tintInk : Theme.inkSoft
            fill: !button.usable ? Theme.well : button.primary ? Theme.accentKey : Theme.sunken
            anchors.verticalCenter: parent.verticalCenter
        }
    }
}
