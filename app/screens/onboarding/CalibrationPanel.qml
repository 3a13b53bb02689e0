import QtQuick
import Vorle
import Vorle.Models

// The guided first triage: one topic at a time, what becomes of it, then the person's own score.
Panel {
    id: panel

    required property CalibrationModel model
    required property KeyboardMap keyboard
    readonly property bool choosing: model.stage === CalibrationModel.Choosing
    readonly property bool scoring: model.stage === CalibrationModel.Scoring
    readonly property bool over: model.stage === CalibrationModel.Over

    name: model.invitationTitle
    sheetWidth: 720
    bodyHeight: Math.max(420, body.implicitHeight)
    onShownChanged: if (!shown) model.leave()
    onChoosingChanged: digits.score = -1
    onScoringChanged: scoring ? digits.forceActiveFocus() : forceActiveFocus()
    Keys.onPressed: event => event.accepted = panel.takes(event) || (scoring && digits.take(event))

    // Whether the key answered.
    function takes(event: KeyEvent): bool {
        const entered = event.key === Qt.Key_Return || event.key === Qt.Key_Enter;
        if (event.isAutoRepeat || (entered && event.modifiers & ~Qt.KeypadModifier)) {
            return false;
        }
        if (entered && scoring) {
            model.give(digits.score);
        } else if (entered && over) {
            closed();
        } else {
            return !entered && acts(keyboard.action(Section.Inbox, event.key, event.modifiers, false));
        }
        return true;
    }
    // As in the list that it goes through.
    function acts(action: int): bool {
        const choices = {
            [KeyboardMap.Keep]: CalibrationModel.Keep,
            [KeyboardMap.Later]: CalibrationModel.Later,
            [KeyboardMap.Dismiss]: CalibrationModel.NotForMe
        };
        if (action === KeyboardMap.Undo && model.canTakeBack) {
            model.takeBack();
        } else if (choosing && action in choices) {
            model.choose(choices[action]);
        } else {
            return false;
        }
        return true;
    }

    Column {
        id: body
        width: parent.width
        spacing: 14

        Item {
            width: parent.width
            height: Math.max(what.implicitHeight, step.implicitHeight)

            Label {
                id: what
                width: parent.width - step.width - 20
                text: panel.over ? "" : panel.model.lastText.length > 0 ? panel.model.lastText : panel.name
                color: Theme.inkFaint
                font.pixelSize: Theme.textNote
                Accessible.role: Accessible.StatusBar
            }
            Label {
                id: step
                anchors.right: parent.right
                text: panel.model.position
                color: Theme.inkFaint
                font.pixelSize: Theme.textNote
                font.weight: Font.DemiBold
            }
        }
        Column {
            width: parent.width
            spacing: 12
            visible: !panel.over

            Flow {
                width: parent.width
                spacing: 10

                Chip {
                    text: panel.model.topic.subject
                    visible: text.length > 0
                }
                Label {
                    width: Math.min(implicitWidth, parent.width)
                    topPadding: 3
                    text: panel.model.topic.facts
                    color: Theme.inkFaint
                    font.pixelSize: Theme.textNote
                    lineHeight: 1.2
                }
            }
            Title {
                width: parent.width
                text: panel.model.topic.title
                size: Theme.titleOpen
            }
            Label {
                width: parent.width
                text: panel.model.topic.gist
                font.pixelSize: Theme.textLarge
            }
            WhyLine {
                width: parent.width
                text: panel.model.topic.why
            }
        }
        EmptyState {
            width: parent.width
            height: 220
            visible: panel.over
            title: panel.over ? panel.model.endTitle : ""
            text: panel.over ? panel.model.endText : ""
        }
        Label {
            topPadding: 8
            visible: !panel.over
            text: panel.scoring ? panel.model.chosenText + ". " + panel.model.question : panel.model.question
            font.weight: Font.DemiBold
            width: parent.width
        }
        Flow {
            width: parent.width
            spacing: 10
            visible: panel.choosing

            ActionButton {
                text: panel.model.label(CalibrationModel.Keep)
                keys: panel.keyboard.keys(KeyboardMap.Keep)
                primary: true
                onClicked: panel.model.choose(CalibrationModel.Keep)
            }
            ActionButton {
                text: panel.model.label(CalibrationModel.Later)
                keys: panel.keyboard.keys(KeyboardMap.Later)
                onClicked: panel.model.choose(CalibrationModel.Later)
            }
            ActionButton {
                text: panel.model.label(CalibrationModel.NotForMe)
                keys: panel.keyboard.keys(KeyboardMap.Dismiss)
                onClicked: panel.model.choose(CalibrationModel.NotForMe)
            }
        }
        ScoreDigits {
            id: digits
            width: parent.width
            keyboard: panel.keyboard
            visible: panel.scoring
        }
        Item {
            width: parent.width
            implicitHeight: ends.implicitHeight + 8

            ActionButton {
                y: 8
                visible: panel.model.canTakeBack && !panel.over
                quiet: true
                text: qsTr("Reprendre ma dernière réponse")
                keys: panel.keyboard.keys(KeyboardMap.Undo)
                takesReturn: !panel.scoring
                onClicked: panel.model.takeBack()
            }
            Row {
                id: ends
                y: 8
                anchors.right: parent.right
                spacing: 10

                ActionButton {
                    visible: !panel.over
                    text: qsTr("Arrêter là")
                    keys: qsTr("Échap")
                    quiet: true
                    takesReturn: !panel.scoring
                    onClicked: panel.closed()
                }
                ActionButton {
                    visible: panel.scoring
                    text: digits.score < 0 ? qsTr("Passer") : qsTr("Noter %1").arg(digits.score)
                    keys: "↩"
                    takesReturn: false
                    primary: digits.score >= 0
                    onClicked: panel.model.give(digits.score)
                }
                ActionButton {
                    visible: panel.over
                    text: qsTr("Fermer")
                    keys: "↩"
                    primary: true
                    onClicked: panel.closed()
                }
            }
        }
    }
}
