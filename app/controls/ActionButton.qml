import QtQuick
import QtQuick.Templates as T
import Vorle

// A button that shows the key which does the same.
T.Button {
    id: button

    property string keys: ""
    property bool keysShown: true // where there is room
    property bool primary: false
    property bool quiet: false // words alone, no outline
    property bool takesReturn: true // else Return is left to what the button stands in
    property bool given: false // what it says holds already
    property bool usable: true // what lies behind a panel is not enabled, and looks as ever

    readonly property color inkNow: !usable ? Theme.inkFaint : primary ? Theme.accentInk : given ? Theme.tintInk : Theme.ink

    implicitWidth: Math.max(Theme.hit, contentItem.implicitWidth + leftPadding + rightPadding)
    implicitHeight: Math.max(Theme.hit + 10, contentItem.implicitHeight + topPadding + bottomPadding)
    leftPadding: quiet ? 8 : 15
    rightPadding: keys.length > 0 && keysShown ? 10 : leftPadding
    font.family: Theme.textFamily
    font.pixelSize: Theme.textBody
    font.weight: Font.DemiBold
    hoverEnabled: true
    focusPolicy: Qt.TabFocus // a click leaves the keyboard where single keys decide
    enabled: usable
    Accessible.role: Accessible.Button
    Accessible.name: given ? qsTr("%1, choisi").arg(text) : text
    Accessible.description: keys.length > 0 ? qsTr("Touche %1").arg(keys) : ""
    Accessible.onPressAction: clicked()
    Keys.onReturnPressed: event => press(event)
    Keys.onEnterPressed: event => press(event)
    Keys.onSpacePressed: event => event.accepted = event.isAutoRepeat

    // With its keys, whether they are shown or not.
    function fullWidth(): real {
        return Math.max(Theme.hit, contentItem.children[0].fullWidth + leftPadding + (keys.length > 0 ? 10 : leftPadding)); // qmllint disable
    }
    // With another key it is a shortcut, and held down it is one press.
    function press(event: KeyEvent) {
        if (!takesReturn || event.isAutoRepeat || (event.modifiers & ~Qt.KeypadModifier)) {
            event.accepted = false;
        } else {
            clicked();
        }
    }

    contentItem: Item {
        // By its place: a name here would have it made before it is needed.
        implicitWidth: children[0].implicitWidth
        implicitHeight: children[0].implicitHeight

        Row {
            anchors.centerIn: parent
            spacing: 9

            readonly property real fullWidth: children[0].implicitWidth + (button.keys.length > 0 ? spacing + children[1].implicitWidth : 0)

            Text {
                text: button.text
                font: button.font
                color: button.inkNow
                textFormat: Text.PlainText
                anchors.verticalCenter: parent.verticalCenter
                Accessible.ignored: true
            }
            KeyCap {
                keys: button.keys
                visible: button.keysShown && keys.length > 0
                bare: button.keys.length > 1
                ink: !button.usable ? Theme.inkFaint : button.primary ? Theme.accentInk : button.given ? Theme.tintInk : Theme.inkSoft
                fill: !button.usable ? Theme.well : button.primary ? Theme.accentKey : Theme.sunken
                anchors.verticalCenter: parent.verticalCenter
            }
        }
    }
    background: Rectangle {
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
}
