import QtQuick
import Vorle

// How far a run looks, from close to far: a single stop for the Tab key, the arrows choose.
Item {
    id: choice

    required property var labels
    required property var texts
    required property int chosen

    readonly property bool wide: width >= 640

    signal picked(int level)

    function takeFocus() {
        options.itemAt(chosen).forceActiveFocus(Qt.TabFocusReason);
    }
    function step(from: int, by: int) {
        const to = (from + by + options.count) % options.count;
        options.itemAt(to).forceActiveFocus(Qt.TabFocusReason);
        picked(to);
    }

    implicitHeight: grid.implicitHeight + 10
    Accessible.role: Accessible.Grouping
    Accessible.name: qsTr("Rayon")

    Rectangle {
        anchors.fill: parent
        radius: Theme.radiusCard
        color: Theme.well
    }
    Grid {
        id: grid
        x: 5
        y: 5
        width: parent.width - 10
        columns: choice.wide ? 3 : 1

        Repeater {
            id: options
            model: choice.labels

            Item {
                id: option
                required property int index
                required property string modelData
                readonly property bool on: index === choice.chosen

                width: grid.width / grid.columns
                height: choice.wide ? 106 : 82
                activeFocusOnTab: on
                Accessible.role: Accessible.RadioButton
                Accessible.name: modelData
                Accessible.description: choice.texts[index]
                Accessible.checkable: true
                Accessible.checked: on
                Accessible.focusable: true
                Accessible.focused: activeFocus
                Accessible.onPressAction: choice.picked(index)
                Accessible.onToggleAction: choice.picked(index)
                Keys.onLeftPressed: choice.step(index, -1)
                Keys.onUpPressed: choice.step(index, -1)
                Keys.onRightPressed: choice.step(index, 1)
                Keys.onDownPressed: choice.step(index, 1)
                Keys.onSpacePressed: choice.picked(index)
                Keys.onReturnPressed: choice.picked(index)

                TapHandler {
                    onTapped: choice.picked(option.index)
                }
                HoverHandler {
                    id: hover
                }
                Rectangle {
                    anchors.fill: parent
                    radius: 14
                    visible: option.on
                    color: Theme.segment
                    border.width: 1
                    border.color: Theme.line
                }
                FocusRing {
                    radius: 16
                    anchors.margins: 1
                    shown: option.activeFocus
                }
                // You in the middle, and as many rings as are looked at.
                Item {
                    id: rings
                    x: 14
                    y: 16
                    width: 44
                    height: 44

                    Repeater {
                        model: [10, 27, 42]

                        Rectangle {
                            required property int index
                            required property int modelData
                            anchors.centerIn: parent
                            width: modelData
                            height: modelData
                            radius: modelData / 2
                            color: index === 0 ? Theme.strong : "transparent"
                            border.width: index === 0 ? 0 : 1
                            border.color: index <= option.index ? Theme.strong : Theme.edge
                        }
                    }
                    Repeater {
                        model: [[32, 26, 1], [34, 5, 2], [5, 30, 2]]

                        Rectangle {
                            required property var modelData
                            visible: option.index >= modelData[2]
                            x: modelData[0]
                            y: modelData[1]
                            width: 6
                            height: 6
                            radius: 3
                            color: Theme.strong
                        }
                    }
                }
                Column {
                    anchors.left: rings.right
                    anchors.leftMargin: 13
                    anchors.right: parent.right
                    anchors.rightMargin: 14
                    y: 18
                    spacing: 3

                    Label {
                        width: parent.width
                        text: option.modelData
                        color: option.on || hover.hovered ? Theme.ink : Theme.inkSoft
                        font.pixelSize: Theme.textSmall
                        font.weight: Font.DemiBold
                        font.letterSpacing: 0.4
                        elide: Text.ElideRight
                        wrapMode: Text.NoWrap
                        lineHeight: 1.2
                        Accessible.ignored: true
                    }
                    Label {
                        width: parent.width
                        text: choice.texts[option.index]
                        color: Theme.inkSoft
                        font.pixelSize: Theme.textNote
                        maximumLineCount: 3
                        elide: Text.ElideRight
                        Accessible.ignored: true
                    }
                }
            }
        }
    }
}
