import QtQuick
import QtQuick.Controls.Basic
import Vorle

// ⌘K: everything held, as one types.
Panel {
    id: overlay

    required property var search // TopicSearch

    signal picked(int section, string topicId)

    name: qsTr("Rechercher")
    onTop: true
    sheetWidth: 680
    sheetHeight: 42 + 2 * padding + (results.count > 0 ? 12 + Math.min(results.contentHeight, 460) : field.text.length > 0 ? 54 : 0)
    padding: 16
    onShownChanged: {
        if (shown) {
            field.selectAll();
            field.forceActiveFocus();
        }
    }

    function accept() {
        if (results.currentItem) {
            overlay.picked(results.currentItem.section, results.currentItem.topicId);
        }
    }

    TextEntry {
        id: field
        width: parent.width
        focus: true
        placeholderText: qsTr("Rechercher dans tes sujets, tes notes et ce que j’ai lu")
        onTextChanged: overlay.search.query = text
        Keys.onDownPressed: results.incrementCurrentIndex()
        Keys.onUpPressed: results.decrementCurrentIndex()
        Keys.onReturnPressed: overlay.accept()
        Keys.onEnterPressed: overlay.accept()
    }
    Label {
        anchors.top: field.bottom
        anchors.topMargin: 16
        anchors.horizontalCenter: parent.horizontalCenter
        visible: field.text.trim().length > 0 && results.count === 0 && !overlay.search.busy
        text: overlay.search.statusText
        color: Theme.inkFaint
    }
    ListView {
        id: results
        anchors.top: field.bottom
        anchors.topMargin: 12
        anchors.bottom: parent.bottom
        width: parent.width
        clip: true
        model: overlay.search
        boundsBehavior: Flickable.StopAtBounds
        highlightMoveDuration: 0
        keyNavigationEnabled: false
        ScrollBar.vertical: ScrollBar {
            width: 8
        }
        Accessible.role: Accessible.List
        Accessible.name: qsTr("Résultats")
        onCountChanged: currentIndex = count > 0 ? 0 : -1

        delegate: Rectangle {
            id: hit

            required property int index
            required property string topicId
            required property string title
            required property string snippetStyled
            required property string sectionLabel
            required property int section

            width: results.width
            height: 58
            radius: Theme.radiusButton
            color: ListView.isCurrentItem ? Theme.accentTint : hover.hovered ? Theme.sunken : "transparent"
            Accessible.role: Accessible.ListItem
            Accessible.name: title
            Accessible.description: sectionLabel
            Accessible.selected: ListView.isCurrentItem

            HoverHandler {
                id: hover
            }
            TapHandler {
                onTapped: overlay.picked(hit.section, hit.topicId)
            }
            Column {
                x: 14
                width: parent.width - 28
                anchors.verticalCenter: parent.verticalCenter
                spacing: 2

                Item {
                    width: parent.width
                    implicitHeight: name.implicitHeight

                    Label {
                        id: name
                        width: parent.width - where.implicitWidth - 16
                        text: hit.title
                        font.weight: Font.DemiBold
                        elide: Text.ElideRight
                        wrapMode: Text.NoWrap
                        lineHeight: 1.15
                        Accessible.ignored: true
                    }
                    Label {
                        id: where
                        anchors.right: parent.right
                        text: hit.sectionLabel
                        color: Theme.inkFaint
                        font.pixelSize: Theme.textSmall
                        wrapMode: Text.NoWrap
                        lineHeight: 1.15
                        Accessible.ignored: true
                    }
                }
                Label {
                    width: parent.width
                    text: hit.snippetStyled
                    textFormat: Text.StyledText
                    color: Theme.inkSoft
                    font.pixelSize: Theme.textSmall + 1
                    elide: Text.ElideRight
                    wrapMode: Text.NoWrap
                    lineHeight: 1.15
                    Accessible.ignored: true
                }
            }
        }
    }
}
