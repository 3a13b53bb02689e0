import QtQuick
import Vorle
import Vorle.Models

// A topic of interest with how much it matters. ↩ gives it another name, ⌫ takes it away.
EditableRow {
    id: interest

    required property interestRow row
    required property KeyboardMap keyboard
    readonly property bool narrow: width < 480

    signal weighed(int weight)

    key: row.name
    shown: row.shown
    given: row.name
    prompt: qsTr("Le nom du domaine")
    place: Qt.rect(-12, 4, weight.x - 4, 38)
    fieldPadding: 12
    fieldSize: Theme.textLarge
    holder: dots
    implicitHeight: 46 + (problem.length > 0 ? why.implicitHeight + 8 : 0)
    Accessible.description: row.weightText

    Rectangle {
        anchors.fill: parent
        anchors.leftMargin: -12
        anchors.rightMargin: -12
        radius: 10
        color: Theme.side
        visible: interest.hovered || interest.activeFocus
    }
    Rectangle {
        width: parent.width
        height: 1
        color: Theme.line
    }
    Label {
        id: name
        anchors.left: parent.left
        anchors.right: weight.left
        anchors.rightMargin: 16
        height: 46
        verticalAlignment: Text.AlignVCenter
        visible: !interest.editing
        text: interest.row.shown
        font.pixelSize: Theme.textLarge
        font.weight: Font.Medium
        wrapMode: Text.NoWrap
        elide: Text.ElideRight
        Accessible.ignored: true

        TapHandler {
            onDoubleTapped: interest.edit()
        }
    }
    Label {
        id: weight
        anchors.right: dots.left
        anchors.rightMargin: 18
        height: 46
        verticalAlignment: Text.AlignVCenter
        text: interest.narrow ? "" : interest.row.weightText
        color: Theme.inkFaint
        font.pixelSize: Theme.textNote
        wrapMode: Text.NoWrap
        Accessible.ignored: true
    }
    WeightDots {
        id: dots
        anchors.right: cross.left
        anchors.rightMargin: 8
        y: 11
        keyboard: interest.keyboard
        name: interest.row.shown
        value: interest.row.weight
        focus: true
        activeFocusOnTab: interest.stop
        onPicked: weight => interest.weighed(weight)
    }
    CrossButton {
        id: cross
        anchors.right: parent.right
        anchors.rightMargin: -4
        y: 11
        what: interest.row.shown
        shown: interest.hovered || dots.activeFocus
        onClicked: interest.removed()
    }
    Label {
        id: why
        y: 44
        width: parent.width
        visible: text.length > 0
        text: interest.problem
        color: Theme.tintInk
        font.pixelSize: Theme.textNote
        Accessible.role: Accessible.AlertMessage
    }
}
