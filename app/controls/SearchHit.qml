import QtQuick
import Vorle

// One topic that was found, with where it stands and the words around what was found.
Rectangle {
    id: hit

    required property string topicId
    required property string title
    required property string snippetStyled
    required property string sectionLabel
    required property int section

    signal picked

    height: Theme.grown(58)
    radius: Theme.radiusButton
    color: hit.ListView.isCurrentItem ? Theme.accentTint : hover.hovered ? Theme.sunken : "transparent"
    Accessible.role: Accessible.ListItem
    Accessible.name: title
    Accessible.description: sectionLabel
    Accessible.selected: hit.ListView.isCurrentItem

    HoverHandler {
        id: hover
    }
    TapHandler {
        onTapped: hit.picked()
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
            font.pixelSize: Theme.textNote
            elide: Text.ElideRight
            wrapMode: Text.NoWrap
            lineHeight: 1.15
            Accessible.ignored: true
        }
    }
}
