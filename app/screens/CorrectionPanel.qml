import QtQuick
import Vorle

// The person's own score for a topic, and why.
Panel {
    id: panel

    required property Shell shell
    property string topicId: ""
    property string title: ""
    property int appScore: -1 // vorle's own; none where nothing could be read
    property int score: -1 // none chosen yet
    property list<string> chosen: [] // words of the reasons
    property bool corrected: false // there is one already
    property bool typedOne: false // the last key was a 1

    name: qsTr("Corriger la note")
    Keys.onPressed: event => {
        const digit = why.activeFocus || (event.modifiers & Qt.ControlModifier) ? -1 : panel.digitOf(event.key);
        const ten = digit === 0 && panel.typedOne; // "1" then "0"
        panel.typedOne = digit === 1;
        if (digit >= 0) {
            panel.score = ten ? 10 : digit;
            event.accepted = true;
        } else if (event.key === Qt.Key_Left && !why.activeFocus) {
            panel.score = Math.max(0, panel.score - 1);
            event.accepted = true;
        } else if (event.key === Qt.Key_Right && !why.activeFocus) {
            panel.score = Math.min(10, panel.score + 1);
            event.accepted = true;
        } else if ((event.key === Qt.Key_Return || event.key === Qt.Key_Enter) && !event.isAutoRepeat) {
            panel.give();
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
        typedOne = false;
        shown = true;
        digits.forceActiveFocus();
    }
    // The digit row of a French keyboard gives digits with Shift alone.
    readonly property var french: [Qt.Key_Agrave, Qt.Key_Ampersand, Qt.Key_Eacute, Qt.Key_QuoteDbl, Qt.Key_Apostrophe, Qt.Key_ParenLeft, Qt.Key_Minus, Qt.Key_Egrave, Qt.Key_Underscore, Qt.Key_Ccedilla]

    function digitOf(key: int): int {
        return key >= Qt.Key_0 && key <= Qt.Key_9 ? key - Qt.Key_0 : french.indexOf(key);
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
        FocusScope {
            id: digits
            width: parent.width
            height: 40
            Accessible.role: Accessible.Slider
            Accessible.name: panel.score < 0 ? qsTr("Ta note : pas encore choisie") : qsTr("Ta note : %1 sur 10").arg(panel.score)

            Row {
                spacing: 6

                Repeater {
                    model: 11

                    Rectangle {
                        id: digit
                        required property int index
                        width: 40
                        height: 40
                        radius: 20
                        color: panel.score === index ? Theme.accent : digitHover.hovered ? Theme.sunken : "transparent"
                        border.width: 1
                        border.color: panel.score === index ? Theme.accent : panel.appScore === index ? Theme.inkFaint : Theme.line

                        Text {
                            anchors.centerIn: parent
                            text: digit.index
                            color: panel.score === digit.index ? Theme.accentInk : Theme.inkSoft
                            font.family: Theme.displayFamily
                            font.pixelSize: Theme.textLarge
                            font.weight: Font.Bold
                            Accessible.ignored: true
                        }
                        HoverHandler {
                            id: digitHover
                        }
                        TapHandler {
                            onTapped: panel.score = digit.index
                        }
                    }
                }
            }
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
