import QtQuick
import Vorle
import Vorle.Models

// A trusted site and how its feed is.
FocusScope {
    id: site

    required property int index
    required property siteRow row
    property bool stop: false // the Tab key stops here
    property string problem: ""
    readonly property bool editing: editor.active
    readonly property bool narrow: width < 560

    signal renamed(string address)
    signal removed
    signal looked
    signal stepped(int by)

    function takeFocus() {
        forceActiveFocus(Qt.TabFocusReason);
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

    implicitHeight: Math.max(54, words.implicitHeight + 14)
    activeFocusOnTab: stop
    Accessible.role: Accessible.ListItem
    Accessible.name: row.shown
    Accessible.description: row.read.length > 0 ? row.state + ", " + row.read : row.state
    Accessible.focusable: true
    Accessible.focused: activeFocus
    Accessible.onPressAction: edit()
    Keys.onPressed: event => {
        if (site.editing || (event.modifiers & ~Qt.KeypadModifier)) {
            return;
        }
        event.accepted = true;
        if (event.key === Qt.Key_Up || event.key === Qt.Key_Down) {
            site.stepped(event.key === Qt.Key_Up ? -1 : 1);
        } else if (event.key === Qt.Key_Delete || event.key === Qt.Key_Backspace) {
            site.removed();
        } else if ((event.key === Qt.Key_Return || event.key === Qt.Key_Enter || event.key === Qt.Key_F2) && !event.isAutoRepeat) {
            site.edit();
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
        visible: hover.hovered || site.activeFocus
    }
    FocusRing {
        radius: 10
        anchors.margins: 1
        anchors.leftMargin: -12
        anchors.rightMargin: -12
        shown: site.activeFocus && !site.editing && !look.activeFocus
    }
    Rectangle {
        width: parent.width
        height: 1
        color: Theme.line
    }
    LetterTile {
        id: tile
        y: 14
        letter: site.row.initial
        seed: site.row.shown
    }
    Column {
        id: words
        anchors.left: tile.right
        anchors.leftMargin: 14
        anchors.right: look.left
        anchors.rightMargin: 12
        y: 7
        spacing: 1
        visible: !site.editing

        Label {
            width: parent.width
            text: site.row.shown
            font.pixelSize: Theme.textMenu
            font.weight: Font.Medium
            wrapMode: Text.NoWrap
            elide: Text.ElideRight
            lineHeight: 1.2
            Accessible.ignored: true

            TapHandler {
                onDoubleTapped: site.edit()
            }
        }
        Label {
            width: parent.width
            text: site.narrow && site.row.read.length > 0 ? site.row.state + " · " + site.row.read : site.row.state
            color: site.row.wrong ? Theme.tintInk : Theme.inkFaint
            font.pixelSize: Theme.textNote
            maximumLineCount: 3
            elide: Text.ElideRight
            lineHeight: 1.25
            Accessible.ignored: true
        }
    }
    Loader {
        id: editor
        active: false
        anchors.left: tile.right
        anchors.leftMargin: 4
        anchors.right: look.left
        anchors.rightMargin: 12
        y: 6
        height: 40
        onLoaded: {
            const field = editor.item as TextEntry;
            field.text = site.row.name;
            field.selectAll();
            field.forceActiveFocus(Qt.TabFocusReason);
        }
        sourceComponent: TextEntry {
            leftPadding: 10
            font.pixelSize: Theme.textBody
            placeholderText: qsTr("L’adresse du site, ou de son flux")
            onAccepted: {
                if (text === site.row.name) {
                    site.stopEditing();
                } else {
                    site.renamed(text);
                }
            }
            onActiveFocusChanged: if (!activeFocus) Qt.callLater(site.stopEditing)
            Keys.onEscapePressed: site.stopEditing()
        }
    }
    ActionButton {
        id: look
        anchors.right: read.left
        anchors.rightMargin: 8
        y: 11
        quiet: true
        implicitHeight: 32
        visible: hover.hovered || site.activeFocus
        font.pixelSize: Theme.textNote
        text: qsTr("Vérifier")
        usable: !site.row.asking
        Accessible.name: qsTr("Vérifier %1").arg(site.row.shown)
        onClicked: site.looked()
    }
    Label {
        id: read
        anchors.right: cross.left
        anchors.rightMargin: 6
        y: 18
        text: site.narrow ? "" : site.row.read
        color: Theme.inkFaint
        font.pixelSize: Theme.textNote
        wrapMode: Text.NoWrap
        lineHeight: 1.2
        Accessible.ignored: true
    }
    CrossButton {
        id: cross
        anchors.right: parent.right
        anchors.rightMargin: -4
        y: 15
        what: site.row.shown
        shown: hover.hovered || site.activeFocus
        onClicked: site.removed()
    }
    Label {
        anchors.left: tile.right
        anchors.leftMargin: 14
        y: 46
        visible: text.length > 0
        text: site.problem
        color: Theme.tintInk
        font.pixelSize: Theme.textNote
        Accessible.role: Accessible.AlertMessage
    }
}
