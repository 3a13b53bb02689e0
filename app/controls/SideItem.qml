import QtQuick
import Vorle

// One section in the side bar, with what waits in it. A plain item: Qt's buttons call themselves
// buttons as soon as assistive technology listens, and this is a tab.
Item {
    id: item

    required property string title
    property int count: 0
    property bool current: false
    property bool strong: false // the count is what asks for attention

    readonly property string shownCount: count > 0 ? count.toLocaleString(Qt.locale("fr_FR"), "f", 0) : ""

    signal clicked

    implicitHeight: Theme.grown(46)
    activeFocusOnTab: true
    Accessible.role: Accessible.PageTab
    Accessible.name: count > 0 ? qsTr("%1, %2").arg(title).arg(shownCount) : title
    Accessible.focusable: true
    Accessible.focused: activeFocus
    Accessible.selected: current
    Accessible.onPressAction: clicked()

    HoverHandler {
        id: hover
    }
    TapHandler {
        onTapped: item.clicked()
    }
    Rectangle {
        anchors.fill: parent
        radius: Theme.radiusButton
        color: item.current ? (Theme.dark ? Theme.raised : Theme.card) : hover.hovered ? Theme.sunken : "transparent"
        border.width: item.current ? 1 : 0
        border.color: Theme.line

        Rectangle {
            visible: item.current
            anchors.left: parent.left
            anchors.verticalCenter: parent.verticalCenter
            width: 3
            height: 18
            radius: 1.5
            color: Theme.accent
        }
        FocusRing {
            radius: parent.radius + 3
            shown: item.activeFocus
        }
    }
    Text {
        anchors.left: parent.left
        anchors.leftMargin: 18
        anchors.verticalCenter: parent.verticalCenter
        width: number.x - x - 6
        fontSizeMode: Text.HorizontalFit // never under the number
        minimumPixelSize: 10
        text: item.title
        color: item.current ? Theme.ink : Theme.inkSoft
        font.family: Theme.textFamily
        font.pixelSize: Theme.textMenu
        font.weight: item.current ? Font.DemiBold : Font.Medium
        textFormat: Text.PlainText
        Accessible.ignored: true
    }
    Text {
        id: number
        anchors.right: parent.right
        anchors.rightMargin: 18
        anchors.verticalCenter: parent.verticalCenter
        text: item.shownCount
        color: item.strong && item.count > 0 ? Theme.accent : Theme.inkFaint
        font.family: Theme.displayFamily
        font.pixelSize: Theme.textMenu
        font.weight: Font.Bold
        textFormat: Text.PlainText
        Accessible.ignored: true
    }
}
