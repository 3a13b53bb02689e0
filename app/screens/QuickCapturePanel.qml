import QtQuick
import Vorle

// A small window of its own, over whatever one works in: the page in front, a note, a project; ↩
// adds, Échap leaves. It stays while one looks elsewhere, for a link to be copied there.
Window {
    id: panel

    required property QuickCapture capture
    readonly property bool proposed: capture.pageAddress.length > 0
    property int project: -1 // of the capture's

    flags: Qt.Dialog | Qt.FramelessWindowHint | Qt.WindowStaysOnTopHint
    color: "transparent"
    width: 580
    height: Math.ceil(sheet.implicitHeight)
    title: qsTr("Ajouter un sujet")

    // Empty but for what is proposed.
    function begin() {
        link.text = "";
        note.text = "";
        project = -1;
        away.stop();
        if (capture.handed) {
            calm.restart();
        }
        takeFocus();
    }
    function takeFocus() {
        if (capture.added) {
            back.forceActiveFocus(Qt.OtherFocusReason);
        } else {
            (proposed ? note : link).forceActiveFocus(Qt.OtherFocusReason);
        }
    }
    function add() {
        // A page chose this moment: what one was typing elsewhere must not confirm it.
        if (capture.added || calm.running || !(proposed || link.text.trim().length > 0)) {
            return;
        }
        if (capture.add(link.text.trim(), note.text.trim(), project)) {
            away.restart();
            takeFocus();
        }
    }
    function takeBack() {
        capture.takeBack();
        hide();
    }

    onActiveChanged: {
        if (active) {
            if (capture.handed) {
                calm.restart(); // what is typed elsewhere just now is not meant for it
            }
            if (!proposed || note.text.length === 0) { // else what was written is for this page
                capture.lookAgain();
            }
            takeFocus();
        }
    }
    Timer {
        id: calm
        interval: 800
    }
    Timer {
        id: away
        interval: Theme.addedStay
        onTriggered: panel.hide()
    }
    Connections {
        target: panel.capture

        function onPageChanged() {
            // It came, or went, with nothing written yet.
            if (link.text.length === 0 && note.text.length === 0) {
                panel.takeFocus();
            }
        }
    }

    Rectangle {
        id: sheet
        anchors.fill: parent
        implicitHeight: panel.capture.added ? done.implicitHeight + 36 : head.height + body.implicitHeight + foot.height + 38
        radius: Theme.radiusCard
        color: Theme.paper
        border.width: 1
        border.color: Theme.line
        Accessible.role: Accessible.Dialog
        Accessible.name: panel.title
        Keys.onEscapePressed: panel.hide()
        Keys.onReturnPressed: panel.add()
        Keys.onEnterPressed: panel.add()
        Keys.onPressed: event => {
            if (panel.capture.added && event.matches(StandardKey.Undo)) {
                event.accepted = true;
                panel.takeBack();
            }
        }

        Item {
            id: head
            visible: !panel.capture.added
            x: 20
            y: 16
            width: parent.width - 40
            height: Math.max(ember.height, title.implicitHeight)

            Mascot {
                id: ember
                anchors.verticalCenter: parent.verticalCenter
                size: 30
                awake: true
            }
            Title {
                id: title
                anchors.left: ember.right
                anchors.leftMargin: 10
                anchors.right: leave.left
                anchors.verticalCenter: parent.verticalCenter
                text: panel.title
                size: Theme.titleCard
            }
            KeyCap {
                id: leave
                anchors.right: parent.right
                anchors.verticalCenter: parent.verticalCenter
                keys: qsTr("Échap")

                TapHandler {
                    onTapped: panel.hide()
                }
            }
            // The window has no frame to be moved by.
            DragHandler {
                target: null
                onActiveChanged: if (active) panel.startSystemMove()
            }
        }
        Column {
            id: body
            visible: !panel.capture.added
            x: 20
            y: head.y + head.height + 14
            width: parent.width - 40
            spacing: 12

            ProposedPage {
                width: parent.width
                visible: panel.proposed
                capture: panel.capture
                onOtherAsked: {
                    panel.capture.dropPage();
                    panel.takeFocus();
                }
            }
            TextEntry {
                id: link
                width: parent.width
                visible: !panel.proposed
                placeholderText: qsTr("L’adresse de la page")
                onTextEdited: panel.capture.typed()
                onAccepted: panel.add()
            }
            Label {
                width: parent.width
                visible: text.length > 0
                text: panel.capture.hint
                color: Theme.inkSoft
                font.pixelSize: Theme.textNote
            }
            TextEntry {
                id: note
                width: parent.width
                placeholderText: qsTr("Une note pour toi et pour le juge, si tu veux")
                onAccepted: panel.add()
            }
            ProjectChoice {
                width: parent.width
                visible: panel.capture.projects.length > 0
                projects: panel.capture.projects
                chosen: panel.project
                onPicked: project => panel.project = project
                onEntered: panel.add()
            }
            Label {
                width: parent.width
                visible: text.length > 0
                text: panel.capture.problem
                color: Theme.tintInk
                Accessible.role: Accessible.AlertMessage
            }
        }
        Item {
            id: foot
            visible: !panel.capture.added
            y: body.y + body.implicitHeight + 8
            width: parent.width
            height: Math.max(promise.implicitHeight, send.implicitHeight) + 28

            Rectangle {
                y: 4
                width: parent.width
                height: 1
                color: Theme.line
            }
            Label {
                id: promise
                x: 20
                anchors.verticalCenter: parent.verticalCenter
                anchors.verticalCenterOffset: 2
                width: send.x - 36
                text: qsTr("Je lis la page, je la juge, et tu la retrouves dans « À trier ».")
                color: Theme.inkSoft
                font.pixelSize: Theme.textNote
            }
            ActionButton {
                id: send
                anchors.right: parent.right
                anchors.rightMargin: 20
                anchors.verticalCenter: promise.verticalCenter
                text: qsTr("Ajouter")
                keys: "↩"
                primary: true
                usable: panel.proposed || link.text.trim().length > 0
                onClicked: panel.add()
            }
        }
        Item {
            id: done
            visible: panel.capture.added
            x: 20
            y: 18
            width: parent.width - 40
            implicitHeight: Math.max(words.implicitHeight, back.implicitHeight)
            height: implicitHeight

            Mascot {
                id: glow
                anchors.verticalCenter: parent.verticalCenter
                size: 30
                awake: true
            }
            Column {
                id: words
                anchors.left: glow.right
                anchors.leftMargin: 12
                anchors.right: back.left
                anchors.rightMargin: 12
                anchors.verticalCenter: parent.verticalCenter

                Label {
                    width: parent.width
                    text: qsTr("Ajouté à « À trier ».")
                    font.weight: Font.DemiBold
                    Accessible.role: Accessible.AlertMessage
                }
                Label {
                    width: parent.width
                    text: qsTr("Je lis la page. Sa note arrive dans une minute.")
                    color: Theme.inkSoft
                    font.pixelSize: Theme.textNote
                }
            }
            ActionButton {
                id: back
                anchors.right: parent.right
                anchors.verticalCenter: parent.verticalCenter
                text: qsTr("Annuler")
                keys: Theme.mac ? "⌘Z" : "Ctrl+Z"
                quiet: true
                takesReturn: false
                onClicked: panel.takeBack()
            }
        }
    }
}
