import QtQuick
import Vorle

// A number with its unit, taken down and up by steps: a single stop for the Tab key.
FocusScope {
    id: stepper

    required property string name
    required property string text // the number as it reads
    property bool least: false // it goes no further down
    property bool most: false

    signal stepped(int by) // -1 or 1

    function takeFocus() {
        forceActiveFocus(Qt.TabFocusReason);
    }

    implicitWidth: row.implicitWidth + 2
    implicitHeight: Math.max(34, Theme.textBody + 20)
    activeFocusOnTab: true
    Accessible.role: Accessible.SpinBox
    Accessible.name: qsTr("%1 : %2").arg(name).arg(text)
    Accessible.focusable: true
    Accessible.focused: activeFocus
    Accessible.onIncreaseAction: if (!most) stepped(1)
    Accessible.onDecreaseAction: if (!least) stepped(-1)
    Keys.onLeftPressed: if (!least) stepped(-1)
    Keys.onRightPressed: if (!most) stepped(1)
    Keys.onPressed: event => {
        if (event.text === "+" || event.text === "-") {
            event.text === "+" ? (most || stepped(1)) : (least || stepped(-1));
            event.accepted = true;
        }
    }

    component End: Item {
        id: end

        required property string sign
        property bool usable: true

        signal pressed

        width: 34
        height: stepper.height

        Rectangle {
            anchors.fill: parent
            anchors.margins: 2
            radius: 9
            color: hover.hovered && end.usable ? Theme.hover : "transparent"
        }
        Label {
            anchors.centerIn: parent
            text: end.sign
            color: end.usable ? Theme.ink : Theme.inkFaint
            font.pixelSize: Theme.textLarge
            lineHeight: 1
            Accessible.ignored: true
        }
        HoverHandler {
            id: hover
        }
        TapHandler {
            enabled: end.usable
            onTapped: end.pressed()
        }
    }

    Rectangle {
        anchors.fill: parent
        radius: 11
        color: "transparent"
        border.width: 1
        border.color: Theme.line
    }
    Row {
        id: row
        x: 1

        End {
            sign: "−"
            usable: !stepper.least
            onPressed: stepper.stepped(-1)
        }
        Rectangle {
            width: 1
            height: stepper.height
            color: Theme.line
        }
        Label {
            width: Math.max(54, implicitWidth + 22)
            height: stepper.height
            horizontalAlignment: Text.AlignHCenter
            verticalAlignment: Text.AlignVCenter
            text: stepper.text
            font.weight: Font.DemiBold
            wrapMode: Text.NoWrap
            lineHeight: 1
            Accessible.ignored: true
        }
        Rectangle {
            width: 1
            height: stepper.height
            color: Theme.line
        }
        End {
            sign: "+"
            usable: !stepper.most
            onPressed: stepper.stepped(1)
        }
    }
    FocusRing {
        radius: 14
        shown: stepper.activeFocus
    }
}
