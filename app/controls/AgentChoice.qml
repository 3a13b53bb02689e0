import QtQuick
import Vorle
import Vorle.Models

// The agents, one of which is chosen: a single stop for the Tab key, the arrows choose.
Column {
    id: choice

    required property string name
    required property var agents // of agentCard
    readonly property list<string> words: ["claude", "codex"] // as they are kept, in that order

    signal picked(string word)

    function takeFocus() {
        for (let i = 0; i < options.count; ++i) {
            const option = options.itemAt(i) as Item;
            if (option.activeFocusOnTab) {
                option.forceActiveFocus(Qt.TabFocusReason);
            }
        }
    }
    function step(from: int, by: int) {
        const to = (from + by + options.count) % options.count;
        (options.itemAt(to) as Item).forceActiveFocus(Qt.TabFocusReason);
        picked(words[to]);
    }

    spacing: 8
    topPadding: 4
    bottomPadding: 12
    Accessible.role: Accessible.Grouping
    Accessible.name: name

    Repeater {
        id: options
        model: choice.agents

        Rectangle {
            id: card
            required property int index
            required property agentCard modelData

            width: choice.width
            height: words.implicitHeight + 32
            radius: 14
            color: "transparent"
            border.width: 1
            border.color: modelData.chosen ? Theme.mid : hover.hovered ? Theme.inkFaint : Theme.line
            activeFocusOnTab: modelData.chosen
            Accessible.role: Accessible.RadioButton
            Accessible.name: qsTr("%1, %2").arg(modelData.name).arg(modelData.state)
            Accessible.description: modelData.text
            Accessible.checkable: true
            Accessible.checked: modelData.chosen
            Accessible.focusable: true
            Accessible.focused: activeFocus
            Accessible.onPressAction: choice.picked(modelData.word)
            Accessible.onToggleAction: choice.picked(modelData.word)
            Keys.onLeftPressed: choice.step(index, -1)
            Keys.onRightPressed: choice.step(index, 1)
            Keys.onSpacePressed: choice.picked(modelData.word)
            Keys.onReturnPressed: choice.picked(modelData.word)

            TapHandler {
                onTapped: choice.picked(card.modelData.word)
            }
            HoverHandler {
                id: hover
            }
            FocusRing {
                radius: 17
                shown: card.activeFocus
            }
            Rectangle {
                x: 18
                y: 18
                width: 16
                height: 16
                radius: 8
                color: "transparent"
                border.width: card.modelData.chosen ? 5 : 1
                border.color: card.modelData.chosen ? Theme.ink : Theme.inkFaint
            }
            Column {
                id: words
                x: 48
                y: 14
                width: parent.width - x - 18
                spacing: 4

                Flow {
                    width: parent.width
                    spacing: 10

                    Title {
                        text: card.modelData.name
                        size: Theme.textMenu
                        Accessible.ignored: true
                    }
                    Label {
                        text: card.modelData.ready ? "✓ " + card.modelData.state : card.modelData.state
                        color: card.modelData.ready ? Theme.inkSoft : Theme.tintInk
                        font.pixelSize: Theme.textNote
                        Accessible.ignored: true
                    }
                }
                Label {
                    width: parent.width
                    text: card.modelData.text
                    color: Theme.inkSoft
                    Accessible.ignored: true
                }
                Label {
                    width: parent.width
                    visible: text.length > 0
                    text: card.modelData.note
                    color: Theme.inkSoft
                    font.pixelSize: Theme.textNote
                }
            }
        }
    }
}
