import QtQuick
import Vorle

// Takes away what it stands on. The keyboard does so from there (⌫).
Press {
    id: cross

    required property string what
    property bool shown: true

    implicitWidth: 24
    implicitHeight: 24
    activeFocusOnTab: false
    opacity: shown || hovered ? 1 : 0
    Accessible.role: Accessible.Button
    Accessible.name: qsTr("Retirer %1").arg(what)
    Accessible.onPressAction: clicked()

    Rectangle {
        anchors.fill: parent
        radius: width / 2
        color: cross.hovered ? Theme.well : "transparent"
    }
    Text {
        anchors.fill: parent
        text: "×"
        color: cross.hovered ? Theme.ink : Theme.inkFaint
        font.family: Theme.textFamily
        font.pixelSize: Theme.textLarge
        horizontalAlignment: Text.AlignHCenter
        verticalAlignment: Text.AlignVCenter
        Accessible.ignored: true
    }
}
