import QtQuick
import Vorle
import Vorle.Models

// A trusted site and how its feed is.
EditableRow {
    id: site

    required property siteRow row
    readonly property bool narrow: width < 560

    signal looked

    key: row.name
    shown: row.shown
    given: row.name
    prompt: qsTr("L’adresse du site, ou de son flux")
    place: Qt.rect(tile.width + 4, 6, look.x - tile.width - 16, 40)
    implicitHeight: editing ? (problem.length > 0 ? why.y + why.implicitHeight + 8 : 54) : Math.max(54, words.implicitHeight + 14)
    activeFocusOnTab: stop
    Accessible.description: row.read.length > 0 ? row.state + ", " + row.read : row.state
    Accessible.focusable: true
    Accessible.focused: activeFocus
    Accessible.onPressAction: edit()

    Rectangle {
        anchors.fill: parent
        anchors.leftMargin: -12
        anchors.rightMargin: -12
        radius: 10
        color: Theme.side
        visible: site.hovered || site.activeFocus
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
    ActionButton {
        id: look
        anchors.right: read.left
        anchors.rightMargin: 8
        y: 11
        quiet: true
        implicitHeight: 32
        visible: site.hovered || site.activeFocus
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
        shown: site.hovered || site.activeFocus
        onClicked: site.removed()
    }
    Label {
        id: why
        anchors.left: tile.right
        anchors.leftMargin: 14
        anchors.right: parent.right
        y: 48
        visible: text.length > 0
        text: site.problem
        color: Theme.tintInk
        font.pixelSize: Theme.textNote
        Accessible.role: Accessible.AlertMessage
    }
}
