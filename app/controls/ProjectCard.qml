import QtQuick
import Vorle
import Vorle.Models

// A watched project. ↩ writes its description, ⌫ takes it away.
EditableRow {
    id: card

    required property projectRow row

    signal folderAsked

    key: row.name
    shown: row.shown
    given: row.description
    prompt: qsTr("Ce qu’est %1, en une phrase").arg(row.shown)
    mayBeEmpty: true
    place: Qt.rect(10, 42, width - 20, 36)
    fieldPadding: 8
    fieldSize: Theme.textNote
    sideways: true
    implicitHeight: 160
    activeFocusOnTab: stop
    Accessible.description: row.told
    Accessible.focusable: true
    Accessible.focused: activeFocus
    Accessible.onPressAction: edit()

    Rectangle {
        anchors.fill: parent
        radius: Theme.radiusCard
        color: Theme.card
        border.width: 1
        border.color: card.hovered ? Theme.edge : Theme.line
    }
    FocusRing {
        radius: Theme.radiusCard + 3
        shown: card.activeFocus && !card.editing
    }
    Title {
        x: 18
        y: 16
        width: cross.x - x - 8
        text: card.row.shown
        size: Theme.titleSmall
        elide: Text.ElideRight
        wrapMode: Text.NoWrap
        Accessible.ignored: true
    }
    CrossButton {
        id: cross
        anchors.right: parent.right
        anchors.rightMargin: 12
        y: 16
        what: card.row.shown
        shown: card.hovered || card.activeFocus
        onClicked: card.removed()
    }
    Label {
        id: description
        x: 18
        y: 43
        width: parent.width - 36
        visible: !card.editing
        text: card.row.description.length > 0 ? card.row.description : qsTr("Décris-le en une phrase : je chercherai mieux pour lui.")
        color: card.row.description.length > 0 ? Theme.inkSoft : Theme.inkFaint
        font.pixelSize: Theme.textNote
        maximumLineCount: 2
        elide: Text.ElideRight
        Accessible.ignored: true

        TapHandler {
            onTapped: card.edit()
        }
    }
    Label {
        id: detail
        x: 18
        y: card.editing ? 84 : Math.max(84, description.y + description.implicitHeight + 6)
        width: parent.width - 36
        text: card.problem.length > 0 ? card.problem : card.row.detail
        color: card.problem.length > 0 || card.row.wrong ? Theme.tintInk : Theme.inkFaint
        font.pixelSize: Theme.textNote
        maximumLineCount: card.row.astray || card.row.labels.length > 0 ? 1 : 2
        elide: Text.ElideRight
        Accessible.role: card.problem.length > 0 ? Accessible.AlertMessage : Accessible.StaticText
        Accessible.ignored: card.problem.length === 0
    }
    Row {
        x: 18
        anchors.bottom: parent.bottom
        anchors.bottomMargin: 16
        width: parent.width - 36
        spacing: 6
        clip: true

        ActionButton {
            visible: card.row.astray
            text: card.width < 260 ? qsTr("Autre dossier…") : qsTr("Choisir un autre dossier…")
            font.pixelSize: Theme.textNote
            implicitHeight: 30
            onClicked: card.folderAsked()
        }
        Repeater {
            model: card.row.astray ? [] : card.row.labels

            Rectangle {
                id: label
                required property string modelData
                width: words.implicitWidth + 18
                height: 22
                radius: 11
                color: Theme.well

                Label {
                    id: words
                    anchors.centerIn: parent
                    text: label.modelData
                    color: Theme.inkSoft
                    font.weight: Font.Medium
                    font.pixelSize: Theme.textSmall
                    wrapMode: Text.NoWrap
                    lineHeight: 1
                    Accessible.ignored: true
                }
            }
        }
    }
}
