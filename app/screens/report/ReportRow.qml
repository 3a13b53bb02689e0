import QtQuick
import Vorle
import Vorle.Models

// One run's report: a line, which opens to all that it has to tell.
FocusScope {
    id: row

    required property string dateText
    required property string addedText
    required property string factsText
    required property string problem
    required property string pages
    required property var scopes // of ReportLine
    required property var notices
    required property var links // of ReportLine
    required property bool open

    signal toggled

    implicitHeight: head.height + (open ? body.implicitHeight + 16 : 0)
    activeFocusOnTab: true
    Accessible.role: Accessible.ListItem
    Accessible.name: dateText + ", " + addedText + ", " + factsText + (problem.length > 0 ? ", " + problem : "")
    Accessible.description: open ? qsTr("ouvert") : qsTr("fermé")
    Accessible.focusable: true
    Accessible.onPressAction: toggled()
    Keys.onReturnPressed: event => toggle(event)
    Keys.onEnterPressed: event => toggle(event)
    Keys.onSpacePressed: event => toggle(event)

    function toggle(event: KeyEvent) {
        event.accepted = !(event.modifiers & ~Qt.KeypadModifier);
        if (event.accepted && !event.isAutoRepeat) {
            toggled();
        }
    }

    Rectangle {
        width: parent.width
        height: 1
        color: Theme.line
    }
    Item {
        id: head
        width: parent.width
        height: Theme.grown(51)

        TapHandler {
            onTapped: row.toggled()
        }
        FocusRing {
            radius: 8
            anchors.margins: 2
            anchors.leftMargin: -10
            anchors.rightMargin: -10
            shown: row.activeFocus
        }
        Title {
            id: date
            width: Theme.grown(218)
            anchors.verticalCenter: parent.verticalCenter
            text: row.dateText
            size: Theme.textMenu
            elide: Text.ElideRight
            wrapMode: Text.NoWrap
            Accessible.ignored: true
        }
        Label {
            id: added
            x: 224
            width: Theme.grown(96)
            anchors.verticalCenter: parent.verticalCenter
            text: row.addedText
            font.weight: Font.DemiBold
            wrapMode: Text.NoWrap
            Accessible.ignored: true
        }
        Label {
            x: 330
            width: trouble.x - x - 12
            anchors.verticalCenter: parent.verticalCenter
            text: row.factsText
            color: Theme.inkFaint
            font.pixelSize: Theme.textNote
            elide: Text.ElideRight
            wrapMode: Text.NoWrap
            Accessible.ignored: true
        }
        Label {
            id: trouble
            x: parent.width - width - 26
            width: Math.min(implicitWidth, 190)
            anchors.verticalCenter: parent.verticalCenter
            text: row.problem
            color: Theme.tintInk
            font.pixelSize: Theme.textNote
            elide: Text.ElideRight
            wrapMode: Text.NoWrap
            Accessible.ignored: true
        }
        Label {
            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            text: "›"
            rotation: row.open ? -90 : 90
            color: Theme.inkFaint
            font.pixelSize: Theme.titleCard
            lineHeight: 1
            Accessible.ignored: true
        }
    }
    Loader {
        id: body
        y: head.height
        width: parent.width
        active: row.open
        sourceComponent: Column {
            spacing: 6

            Repeater {
                model: row.scopes
                ReportScope {
                    width: body.width
                }
            }
            Label {
                width: body.width
                topPadding: 6
                visible: text.length > 0
                text: row.pages
                color: Theme.inkFaint
                font.pixelSize: Theme.textNote
            }
            Repeater {
                model: row.notices
                Label {
                    required property string modelData
                    width: body.width
                    text: modelData
                    color: Theme.inkFaint
                    font.pixelSize: Theme.textNote
                }
            }
            Repeater {
                model: row.links
                Label {
                    required property reportLine modelData
                    width: body.width
                    leftPadding: 16
                    text: modelData.name + " · " + modelData.remark
                    color: Theme.inkFaint
                    font.pixelSize: Theme.textNote
                }
            }
        }
    }
}
