import QtQuick
import QtQuick.Templates as T
import Vorle
import Vorle.Models

// The bench preview, over the window: samples that an expert graded, judged when one asks for it.
Panel {
    id: panel

    required property BenchPreview bench

    name: bench.title
    sheetWidth: 860
    sheetHeight: height - 40
    padding: 0
    onShownChanged: {
        if (shown) {
            starter.forceActiveFocus(Qt.TabFocusReason);
        } else {
            bench.stop();
        }
    }
    Keys.onPressed: event => {
        if (event.key === Qt.Key_Up || event.key === Qt.Key_Down) {
            sight.scrollBy(event.key === Qt.Key_Up ? -66 : 66);
            event.accepted = true;
        } else {
            event.accepted = !(event.modifiers & ~Qt.KeypadModifier) && sight.takes(event.key);
        }
    }

    InSight {
        id: sight
        view: list
    }
    Column {
        id: head
        x: 28
        y: 22
        width: parent.width - 56
        spacing: 6

        Title {
            width: parent.width
            text: panel.bench.title
            size: Theme.scaled(28)
        }
        Label {
            width: parent.width
            text: panel.bench.subtitle
            color: Theme.inkSoft
            font.pixelSize: Theme.textMenu
        }
        Item {
            width: 1
            height: 4
        }
        Flow {
            width: parent.width
            spacing: 10

            ActionButton {
                id: starter
                primary: !panel.bench.running
                text: panel.bench.running ? qsTr("Arrêter") : qsTr("Lancer l’aperçu")
                onClicked: panel.bench.running ? panel.bench.stop() : panel.bench.start()
            }
            ActionButton {
                text: panel.bench.leaveText
                keys: qsTr("Échap")
                onClicked: panel.closed()
            }
        }
        Label {
            width: parent.width
            text: panel.bench.statusText.length > 0 ? panel.bench.statusText : panel.bench.costText
            color: panel.bench.failed ? Theme.tintInk : Theme.inkSoft
            font.pixelSize: Theme.textNote
            Accessible.role: Accessible.AlertMessage
        }
    }
    ListView {
        id: list
        anchors.top: head.bottom
        anchors.topMargin: 14
        anchors.bottom: parent.bottom
        anchors.bottomMargin: 8
        x: 28
        width: parent.width - 42
        clip: true
        model: panel.bench.rows
        boundsBehavior: Flickable.StopAtBounds
        keyNavigationEnabled: false
        T.ScrollBar.vertical: ScrollLine {}
        Accessible.role: Accessible.List
        Accessible.name: panel.name

        delegate: Item {
            id: row
            required property benchRow modelData

            width: list.width - 14
            height: Math.max(54, words.implicitHeight + 20)
            Accessible.role: Accessible.ListItem
            Accessible.name: (modelData.judged ? modelData.look.name : qsTr("Pas encore jugé")) + ". " + modelData.expected + ". " + modelData.title
            Accessible.description: modelData.text

            ScoreBadge {
                id: badge
                anchors.verticalCenter: parent.verticalCenter
                visible: row.modelData.judged
                look: row.modelData.look
                size: 40
                Accessible.ignored: true
            }
            Column {
                id: words
                x: 56
                anchors.verticalCenter: parent.verticalCenter
                width: parent.width - x - expected.width - 16
                spacing: 2

                Label {
                    width: parent.width
                    text: row.modelData.title
                    font.pixelSize: Theme.textMenu
                    font.weight: Font.Medium
                    maximumLineCount: 2
                    elide: Text.ElideRight
                    Accessible.ignored: true
                }
                Label {
                    width: parent.width
                    visible: text.length > 0
                    text: row.modelData.text
                    color: Theme.inkSoft
                    font.pixelSize: Theme.textNote
                    maximumLineCount: 2
                    elide: Text.ElideRight
                    Accessible.ignored: true
                }
            }
            Label {
                id: expected
                anchors.right: parent.right
                anchors.verticalCenter: parent.verticalCenter
                text: row.modelData.expected
                color: Theme.inkSoft
                font.pixelSize: Theme.textNote
                wrapMode: Text.NoWrap
                Accessible.ignored: true
            }
            Rectangle {
                anchors.bottom: parent.bottom
                width: parent.width
                height: 1
                color: Theme.line
            }
        }
    }
}
