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

    readonly property string toldCount: count > 0 ? count.toLocaleString(Qt.locale("fr_FR"), "f", 0) : ""

    signal clicked

    implicitHeight: Theme.grown(40)
    activeFocusOnTab: true
    Accessible.role: Accessible.PageTab
    Accessible.name: count > 0 ? qsTr("%1, %2").arg(title).arg(toldCount) : title
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
        fontSizeMode: Theme.fitting(text, Theme.textMenu, width) // never under the number
        minimumPixelSize: 10
        text: item.title
        color: item.current ? Theme.ink : Theme.inkSoft
        font.family: Theme.textFamily
        font.pixelSize: Theme.textMenu
        font.weight: Font.Medium
        textFormat: Text.PlainText
        Accessible.ignored: true
    }
    // The count ticks where it changes: the new one comes from below, or from above.
    property bool settled: false
    property int lastCount: 0
    property real lift: 0

    onCountChanged: {
        if (settled && Theme.fold > 0) {
            tick.from = count > lastCount ? 9 : -9;
            tick.restart();
        }
        lastCount = count;
    }
    Component.onCompleted: {
        lastCount = count;
        settled = true;
    }

    NumberAnimation {
        id: tick
        target: item
        property: "lift"
        to: 0
        duration: Theme.fold
        easing.type: Easing.OutCubic
    }
    Text {
        id: number
        anchors.right: parent.right
        anchors.rightMargin: 18
        anchors.verticalCenter: parent.verticalCenter
        anchors.verticalCenterOffset: item.lift
        opacity: 1 - Math.abs(item.lift) / 12
        // The face of titles has no narrow space, and one of another face would be looked for.
        text: item.toldCount.replace(/\u202f/g, "\u2009")
        color: item.strong && item.count > 0 ? Theme.tintInk : Theme.inkFaint
        font.family: Theme.displayFamily
        font.pixelSize: Theme.textMenu
        font.weight: Font.Bold
        textFormat: Text.PlainText
        Accessible.ignored: true
    }
}
