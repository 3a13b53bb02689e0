import QtQuick
import Vorle
import Vorle.Models

// A topic of interest with how much it matters. ↩ gives it another name, ⌫ takes it away.
FocusScope {
    id: interest

    required property int index
    required property interestRow row
    property bool stop: false // the Tab key stops here
    property string problem: ""
    readonly property bool narrow: width < 480
    readonly property bool editing: editor.active

    signal weighed(int weight)
    signal renamed(string name)
    signal removed
    signal stepped(int by)

    function takeFocus() {
        dots.forceActiveFocus(Qt.TabFocusReason);
    }
    function edit() {
        problem = "";
        editor.active = true;
    }
    function stopEditing() {
        const had = (editor.item as TextEntry)?.activeFocus ?? false;
        editor.active = false;
        problem = "";
        if (had) {
            takeFocus();
        }
    }

    implicitHeight: 46 + (problem.length > 0 ? 22 : 0)
    Accessible.role: Accessible.ListItem
    Accessible.name: row.shown
    Accessible.description: row.weightText
    Keys.onPressed: event => {
        if (interest.editing || (event.modifiers & ~Qt.KeypadModifier)) {
            return;
        }
        event.accepted = true;
        if (event.key === Qt.Key_Up || event.key === Qt.Key_Down) {
            interest.stepped(event.key === Qt.Key_Up ? -1 : 1);
        } else if (event.key === Qt.Key_Delete || event.key === Qt.Key_Backspace) {
            interest.removed();
        } else if ((event.key === Qt.Key_Return || event.key === Qt.Key_Enter || event.key === Qt.Key_F2) && !event.isAutoRepeat) {
            interest.edit();
        } else {
            event.accepted = false;
        }
    }

    HoverHandler {
        id: hover
    }
    Rectangle {
        anchors.fill: parent
        anchors.leftMargin: -12
        anchors.rightMargin: -12
        radius: 10
        color: Theme.side
        visible: hover.hovered || interest.activeFocus
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
    Loader {
        id: editor
        active: false
        anchors.left: parent.left
        anchors.leftMargin: -12
        anchors.right: weight.left
        anchors.rightMargin: 16
        y: 4
        height: 38
        onLoaded: {
            const field = editor.item as TextEntry;
            field.text = interest.row.name;
            field.selectAll();
            field.forceActiveFocus(Qt.TabFocusReason);
        }
        sourceComponent: TextEntry {
            leftPadding: 12
            placeholderText: qsTr("Le nom du domaine")
            onAccepted: interest.renamed(text)
            onActiveFocusChanged: if (!activeFocus) Qt.callLater(interest.stopEditing) // qmllint disable
            Keys.onEscapePressed: interest.stopEditing()
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
        shown: hover.hovered || dots.activeFocus
        onClicked: interest.removed()
    }
    Label {
        y: 44
        visible: text.length > 0
        text: interest.problem
        color: Theme.tintInk
        font.pixelSize: Theme.textNote
        Accessible.role: Accessible.AlertMessage
    }
}
