import QtQuick
import QtQuick.Templates as T
import Vorle

// "Envoyer un retour": a message to the maker, laid before the person in their own mail program.
Panel {
    id: panel

    required property FeedbackModel model

    name: qsTr("Envoyer un retour")
    sheetWidth: 600
    bodyHeight: body.implicitHeight
    onShownChanged: {
        if (shown) {
            message.text = model.text;
            message.forceActiveFocus();
        }
    }
    Keys.onPressed: event => {
        if ((event.key === Qt.Key_Return || event.key === Qt.Key_Enter) && (event.modifiers & Qt.ControlModifier) && !event.isAutoRepeat) {
            panel.model.prepare();
            event.accepted = true;
        }
    }

    Connections {
        target: panel.model

        function onPrepared() {
            message.text = "";
            panel.closed();
        }
    }
    Column {
        id: body
        width: parent.width
        spacing: 14

        Title {
            width: parent.width
            text: panel.name
            size: Theme.titleOpen
        }
        Label {
            width: parent.width
            text: qsTr("Ce qui marche, ce qui coince, ce qui manque : tout aide. Le message s’ouvre prêt, tu l’envoies toi-même.")
            color: Theme.inkSoft
        }
        Segments {
            width: Math.min(implicitWidth, parent.width)
            name: qsTr("De quoi il s’agit")
            labels: panel.model.kinds
            chosen: panel.model.kind
            onPicked: index => panel.model.kind = index
        }
        T.TextArea {
            id: message
            width: parent.width
            implicitHeight: Math.max(Theme.grown(118), contentHeight + topPadding + bottomPadding)
            leftPadding: 16
            rightPadding: 16
            topPadding: 13
            bottomPadding: 13
            color: Theme.ink
            selectionColor: Theme.accent
            selectedTextColor: Theme.accentInk
            font.family: Theme.textFamily
            font.pixelSize: Theme.textBody
            wrapMode: TextEdit.Wrap
            textFormat: TextEdit.PlainText
            selectByMouse: true
            Accessible.role: Accessible.EditableText
            Accessible.name: panel.model.prompt
            onTextChanged: panel.model.text = text
            Keys.priority: Keys.BeforeItem
            Keys.onTabPressed: nextItemInFocusChain(true).forceActiveFocus(Qt.TabFocusReason)
            Keys.onBacktabPressed: nextItemInFocusChain(false).forceActiveFocus(Qt.BacktabFocusReason)

            background: Rectangle {
                radius: Theme.radiusButton
                color: Theme.sunken
                border.width: message.activeFocus ? 2 : 1
                border.color: message.activeFocus ? Theme.accent : Theme.line
            }

            Text {
                x: message.leftPadding
                y: message.topPadding
                width: message.width - 2 * x
                visible: message.text.length === 0 && message.preeditText.length === 0
                text: panel.model.prompt
                color: Theme.inkFaint
                font: message.font
                wrapMode: Text.Wrap
                Accessible.ignored: true
            }
        }
        FeedbackPictures {
            width: parent.width
            model: panel.model
        }
        Item {
            width: parent.width
            implicitHeight: Math.max(joined.implicitHeight, diagnosed.height)

            Column {
                id: joined
                width: parent.width - diagnosed.width - 16
                spacing: 2

                Label {
                    width: parent.width
                    text: panel.model.diagnosticsLabel
                    font.weight: Font.Medium
                    Accessible.ignored: true
                }
                Label {
                    width: parent.width
                    text: panel.model.joinedText
                    color: Theme.inkSoft
                    font.pixelSize: Theme.textNote
                }
            }
            Switch {
                id: diagnosed
                anchors.right: parent.right
                anchors.verticalCenter: parent.verticalCenter
                name: panel.model.diagnosticsLabel
                on: panel.model.diagnosed
                onToggled: on => panel.model.diagnosed = on
            }
        }
        Label {
            width: parent.width
            visible: text.length > 0
            text: panel.model.problem
            color: Theme.tintInk
            font.pixelSize: Theme.textNote
            Accessible.role: Accessible.AlertMessage
        }
        Flow {
            width: parent.width
            layoutDirection: Qt.RightToLeft
            spacing: 10

            ActionButton {
                text: panel.model.pictures.length > 0 ? qsTr("Préparer l’e-mail (%1)").arg(panel.model.pictures.length) : qsTr("Préparer l’e-mail")
                primary: !panel.model.toCopy
                usable: message.text.trim().length > 0 && !panel.model.busy
                onClicked: panel.model.prepare()
            }
            ActionButton {
                id: copier
                visible: panel.model.toCopy
                // It may lie below what is seen of the form.
                onVisibleChanged: if (visible && panel.shown) forceActiveFocus(Qt.TabFocusReason)
                primary: true
                text: qsTr("Copier le message")
                onClicked: panel.model.copy()
            }
            ActionButton {
                text: qsTr("Annuler")
                keys: qsTr("Échap")
                onClicked: panel.closed()
            }
        }
    }
}
