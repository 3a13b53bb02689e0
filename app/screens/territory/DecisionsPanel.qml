import QtQuick
import QtQuick.Templates as T
import Vorle
import Vorle.Models

// The decisions that a reflex rests on; ↩ shows one where it is.
Panel {
    id: panel

    required property ReflexesModel model
    property string title: ""
    property string evidence: ""
    property var decisions: [] // of DecidedRow

    signal picked(int section, string topicId)

    function open(reflex: reflexRow) {
        title = reflex.title;
        evidence = reflex.evidence;
        decisions = model.decisions(reflex.id);
        list.currentIndex = 0;
        shown = true;
        list.forceActiveFocus();
    }
    function accept() {
        const decision = panel.decisions[list.currentIndex];
        if (decision !== undefined && decision.section >= 0) {
            panel.picked(decision.section, decision.topicId);
        }
    }

    name: title
    sheetWidth: 680
    sheetHeight: head.implicitHeight + 14 + Math.min(list.contentHeight, 460) + 2 * padding

    Column {
        id: head
        width: parent.width
        spacing: 4

        Title {
            width: parent.width
            text: panel.title
            size: Theme.titleCard
        }
        Label {
            width: parent.width
            text: panel.evidence
            color: Theme.inkFaint
        }
    }
    ListView {
        id: list
        anchors.top: head.bottom
        anchors.topMargin: 14
        anchors.bottom: parent.bottom
        width: parent.width
        clip: true
        focus: true
        model: panel.decisions
        boundsBehavior: Flickable.StopAtBounds
        highlightMoveDuration: 0
        keyNavigationEnabled: false
        T.ScrollBar.vertical: ScrollLine {}
        Accessible.role: Accessible.List
        Accessible.name: panel.title
        Keys.onDownPressed: incrementCurrentIndex()
        Keys.onUpPressed: decrementCurrentIndex()
        Keys.onReturnPressed: event => event.isAutoRepeat || panel.accept()
        Keys.onEnterPressed: event => event.isAutoRepeat || panel.accept()

        delegate: Item {
            id: line

            required property int index
            required property decidedRow modelData
            readonly property bool current: ListView.isCurrentItem

            width: list.width
            height: 46
            Accessible.role: Accessible.ListItem
            Accessible.name: qsTr("%1, %2, %3").arg(modelData.title).arg(modelData.went).arg(modelData.date)
            Accessible.focusable: true
            Accessible.focused: current && list.activeFocus

            Rectangle {
                anchors.fill: parent
                radius: 10
                visible: line.current || hover.hovered
                color: Theme.sunken
            }
            HoverHandler {
                id: hover
            }
            TapHandler {
                onTapped: {
                    list.currentIndex = line.index;
                    panel.accept();
                }
            }
            Label {
                x: 12
                width: facts.x - 24
                anchors.verticalCenter: parent.verticalCenter
                text: line.modelData.title
                font.weight: Font.Medium
                wrapMode: Text.NoWrap
                elide: Text.ElideRight
                lineHeight: 1.2
                Accessible.ignored: true
            }
            Label {
                id: facts
                anchors.right: parent.right
                anchors.rightMargin: 12
                anchors.verticalCenter: parent.verticalCenter
                text: qsTr("%1 · %2").arg(line.modelData.went).arg(line.modelData.date)
                color: Theme.inkFaint
                font.pixelSize: Theme.textNote
                wrapMode: Text.NoWrap
                lineHeight: 1.2
                Accessible.ignored: true
            }
        }
    }
}
