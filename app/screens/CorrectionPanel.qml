import QtQuick
import Vorle

// The person's own score for a topic, and why.
Panel {
    id: panel

    required property Shell shell
    property string topicId: ""
    property string title: ""
    property int appScore: -1 // vorle's own; none where nothing could be read
    property alias score: digits.score
    property list<string> chosen: [] // words of the reasons
    property bool corrected: false // there is one already
    readonly property bool unsaved: shown // whoever ends the program asks

    name: qsTr("Corriger la note")
    Keys.onPressed: event => {
        if ((event.key === Qt.Key_Return || event.key === Qt.Key_Enter) && !event.isAutoRepeat) {
            panel.give();
            event.accepted = true;
        } else if (!why.activeFocus && digits.take(event)) {
            event.accepted = true;
        }
    }

    function open(id: string) {
        topicId = id;
        title = shell.titleOf(id);
        appScore = shell.judgedScore(id);
        score = shell.shownScore(id);
        chosen = shell.correctionTags(id);
        why.text = shell.correctionText(id);
        corrected = shell.isCorrected(id);
        digits.typedOne = false;
        shown = true;
        digits.forceActiveFocus();
    }
    function give() {
        if (score >= 0) {
            shell.correct(topicId, score, chosen, why.text.trim());
            closed();
        }
    }
    function toggle(word: string) {
        const others = [];
        for (const other of chosen) {
            if (other !== word) {
                others.push(other);
            }
        }
        chosen = others.length < chosen.length ? others : others.concat([word]);
    }

    bodyHeight: body.implicitHeight

    Column {
        id: body
        width: parent.width
        spacing: 16

        Title {
            text: panel.name
            size: Theme.titleOpen
        }
        Label {
            width: parent.width
            text: panel.title
            color: Theme.inkSoft
            maximumLineCount: 2
            elide: Text.ElideRight
        }
        ScoreDigits {
            id: digits
            width: parent.width
            keyboard: panel.shell.keyboard
            appScore: panel.appScore
        }
        Label {
            text: panel.appScore < 0 ? qsTr("Je n’avais rien pu lire : je n’ai pas mis de note.") : qsTr("J’avais mis %1.").arg(panel.appScore)
            color: Theme.inkFaint
            font.pixelSize: Theme.textNote
        }
        Flow {
            width: parent.width
            spacing: 8

            Repeater {
                model: panel.shell.correctionReasons

                ActionButton {
                    id: word
                    required property namedChoice modelData
                    text: modelData.text
                    takesReturn: false
                    primary: panel.chosen.includes(modelData.word)
                    Accessible.name: primary ? qsTr("%1, choisi").arg(text) : text
                    onClicked: panel.toggle(modelData.word)
                }
            }
        }
        TextEntry {
            id: why
            width: parent.width
            placeholderText: qsTr("Pourquoi, en quelques mots")
        }
        Item {
            width: parent.width
            implicitHeight: buttons.implicitHeight

            ActionButton {
                visible: panel.corrected
                quiet: true
                takesReturn: false
                text: panel.appScore < 0 ? qsTr("Retirer ma note") : qsTr("Reprendre la note de vorle")
                onClicked: {
                    panel.shell.uncorrect(panel.topicId);
                    panel.closed();
                }
            }
            Row {
                id: buttons
                anchors.right: parent.right
                spacing: 10

                ActionButton {
                    text: qsTr("Annuler")
                    keys: qsTr("Échap")
                    takesReturn: false
                    onClicked: panel.closed()
                }
                ActionButton {
                    text: qsTr("Noter")
                    takesReturn: false
                    usable: panel.score >= 0
                    keys: "↩"
                    primary: true
                    onClicked: panel.give()
                }
            }
        }
    }
}
