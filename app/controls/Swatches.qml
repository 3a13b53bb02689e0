import QtQuick
import Vorle

// A colour among a few, each shown with its name: a single stop for the Tab key, the arrows choose.
Item {
    id: swatches

    required property string name
    required property list<string> words // what is kept of each
    required property list<color> colours
    required property string present

    signal picked(string word)

    function indexOf(word: string): int {
        for (let i = 0; i < words.length; ++i) {
            if (words[i] === word) {
                return i;
            }
        }
        return -1;
    }
    function takeFocus() {
        (options.itemAt(Math.max(0, indexOf(present))) as Item).forceActiveFocus(Qt.TabFocusReason);
    }
    function step(from: int, by: int) {
        const to = (from + by + words.length) % words.length;
        (options.itemAt(to) as Item).forceActiveFocus(Qt.TabFocusReason);
        picked(words[to]);
    }

    implicitWidth: row.implicitWidth
    implicitHeight: row.implicitHeight
    Accessible.role: Accessible.Grouping // without a name: each choice has it

    Row {
        id: row

        Repeater {
            id: options
            model: swatches.words

            Item {
                id: option
                required property int index
                required property string modelData
                readonly property bool on: modelData === swatches.present

                width: Math.max(66, word.implicitWidth + 10)
                height: 36 + 6 + word.implicitHeight
                activeFocusOnTab: on || (swatches.indexOf(swatches.present) < 0 && index === 0)
                Accessible.role: Accessible.RadioButton
                Accessible.name: qsTr("%1 : %2").arg(swatches.name).arg(modelData)
                Accessible.checkable: true
                Accessible.checked: on
                Accessible.focusable: true
                Accessible.focused: activeFocus
                Accessible.onPressAction: swatches.picked(modelData)
                Accessible.onToggleAction: swatches.picked(modelData)
                Keys.onLeftPressed: swatches.step(index, -1)
                Keys.onRightPressed: swatches.step(index, 1)
                Keys.onSpacePressed: swatches.picked(modelData)
                Keys.onReturnPressed: swatches.picked(modelData)

                TapHandler {
                    onTapped: swatches.picked(option.modelData)
                }
                Rectangle {
                    id: disc
                    y: 5
                    anchors.horizontalCenter: parent.horizontalCenter
                    width: 26
                    height: 26
                    radius: 13
                    color: swatches.colours[option.index] ?? "transparent"

                    Rectangle {
                        anchors.fill: parent
                        anchors.margins: -5
                        radius: width / 2
                        visible: option.on
                        color: "transparent"
                        border.width: 2
                        border.color: disc.color
                    }
                }
                Label {
                    id: word
                    anchors.horizontalCenter: parent.horizontalCenter
                    anchors.bottom: parent.bottom
                    text: option.modelData
                    color: option.on ? Theme.ink : Theme.inkSoft
                    font.pixelSize: Theme.textSmall
                    font.weight: option.on ? Font.DemiBold : Font.Normal
                    wrapMode: Text.NoWrap
                    lineHeight: 1.1
                    Accessible.ignored: true
                }
                FocusRing {
                    radius: 12
                    anchors.margins: -2
                    shown: option.activeFocus
                }
            }
        }
    }
}
