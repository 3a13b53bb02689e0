import QtQuick
import QtQuick.Templates as T
import Vorle
import Vorle.Models

// What a run would send, word for word: the questions, and the text of the one that is chosen.
Panel {
    id: panel

    required property SendPreview preview
    property int at: 0
    readonly property var questions: preview.questions
    readonly property bool wide: width >= 760

    name: qsTr("Ce qu’une fouille envoie")
    sheetWidth: 960
    sheetHeight: height - 60
    padding: 24
    onShownChanged: {
        if (shown) {
            at = 0;
            list.forceActiveFocus();
        }
    }
    onQuestionsChanged: at = Math.max(0, Math.min(at, questions.length - 1))
    onAtChanged: text.contentY = 0

    Title {
        id: title
        text: panel.name
        size: Theme.titleCard
    }
    Label {
        id: promise
        anchors.top: title.bottom
        anchors.topMargin: 2
        width: parent.width
        text: panel.preview.note.length > 0 ? panel.preview.note : qsTr("Rien n’est envoyé ici. Une fouille pose ces questions à ton IA ; « … » tient la place de ce qu’elle aura trouvé.")
        color: Theme.inkFaint
        font.pixelSize: Theme.textNote
    }
    ListView {
        id: list
        anchors.top: promise.bottom
        anchors.topMargin: 16
        width: panel.wide ? 224 : parent.width
        height: panel.wide ? parent.height - y : Math.min(contentHeight, 118)
        clip: true
        focus: true
        model: panel.questions
        currentIndex: panel.at
        boundsBehavior: Flickable.StopAtBounds
        highlightMoveDuration: 0
        keyNavigationEnabled: false
        activeFocusOnTab: true
        Accessible.role: Accessible.List
        Accessible.name: qsTr("Questions")
        Keys.onDownPressed: panel.at = Math.min(panel.at + 1, count - 1)
        Keys.onUpPressed: panel.at = Math.max(panel.at - 1, 0)
        T.ScrollBar.vertical: ScrollLine {}

        delegate: Item {
            id: line

            required property int index
            required property sentQuestion modelData
            readonly property bool current: index === panel.at

            width: list.width
            height: 38
            Accessible.role: Accessible.ListItem
            Accessible.name: modelData.name + ", " + modelData.size
            Accessible.focusable: true
            Accessible.focused: current && list.activeFocus

            Rectangle {
                anchors.fill: parent
                radius: 10
                color: line.current ? Theme.well : hover.hovered ? Theme.sunken : "transparent"
                border.width: line.current && list.activeFocus ? 2 : 0
                border.color: Theme.accent
            }
            HoverHandler {
                id: hover
            }
            TapHandler {
                onTapped: panel.at = line.index
            }
            Label {
                x: 12
                width: size.x - 20
                anchors.verticalCenter: parent.verticalCenter
                text: line.modelData.name
                font.weight: line.current ? Font.DemiBold : Font.Medium
                wrapMode: Text.NoWrap
                elide: Text.ElideRight
                lineHeight: 1.2
                Accessible.ignored: true
            }
            Label {
                id: size
                anchors.right: parent.right
                anchors.rightMargin: 12
                anchors.verticalCenter: parent.verticalCenter
                text: line.modelData.size
                color: Theme.inkFaint
                font.pixelSize: Theme.textNote
                wrapMode: Text.NoWrap
                lineHeight: 1.2
                Accessible.ignored: true
            }
        }
    }
    Rectangle {
        anchors.left: panel.wide ? list.right : parent.left
        anchors.leftMargin: panel.wide ? 16 : 0
        anchors.right: parent.right
        anchors.top: panel.wide ? list.top : list.bottom
        anchors.topMargin: panel.wide ? 0 : 12
        anchors.bottom: parent.bottom
        radius: 12
        color: Theme.sunken
        border.width: text.activeFocus ? 2 : 1
        border.color: text.activeFocus ? Theme.accent : Theme.line

        Flickable {
            id: text
            anchors.fill: parent
            anchors.margins: 16
            contentHeight: words.implicitHeight
            clip: true
            boundsBehavior: Flickable.StopAtBounds
            activeFocusOnTab: true
            T.ScrollBar.vertical: ScrollLine {}
            Keys.onPressed: event => {
                event.accepted = scroll.takes(event.key) || event.key === Qt.Key_Down || event.key === Qt.Key_Up;
                if (event.key === Qt.Key_Down || event.key === Qt.Key_Up) {
                    scroll.scrollBy(event.key === Qt.Key_Down ? 60 : -60);
                }
            }

            InSight {
                id: scroll
                view: text
            }
            SelectableText {
                id: words
                width: text.width
                words: panel.shown ? panel.questions[panel.at]?.text ?? "" : ""
                font.family: Theme.codeFamily
                font.pixelSize: Theme.textSmall
                color: Theme.inkSoft
            }
        }
    }
}
