import QtQuick
import Vorle

// The pictures that go with a message: dropped here, chosen, or the window as it was.
Item {
    id: zone

    required property FeedbackModel model
    readonly property bool full: model.pictures.length >= 5

    implicitHeight: body.implicitHeight + 26

    DropArea {
        id: drop
        anchors.fill: parent
        keys: ["text/uri-list"]
        onDropped: event => zone.model.join(event.urls)
    }
    Rectangle {
        anchors.fill: parent
        radius: 14
        color: drop.containsDrag ? Theme.hover : "transparent"
        border.width: 1
        border.color: drop.containsDrag ? Theme.accent : Theme.edge
    }
    Column {
        id: body
        x: 14
        y: 13
        width: parent.width - 28
        spacing: 10

        Item {
            width: parent.width
            implicitHeight: Math.max(preview.visible ? preview.height : 0, words.implicitHeight, ways.below ? 0 : ways.implicitHeight) + (ways.below ? ways.implicitHeight + 8 : 0)

            Image {
                id: preview
                visible: zone.model.windowImage.length > 0
                width: 84
                height: 56
                fillMode: Image.PreserveAspectFit
                source: zone.model.windowImage
                cache: false // it is in the address itself
                Accessible.ignored: true
            }
            Label {
                id: words
                x: preview.visible ? preview.width + 14 : 0
                width: parent.width - x - (ways.below ? 0 : ways.implicitWidth + 14)
                text: qsTr("Ou glisse des images ici. « Capturer vorle » joint la fenêtre de vorle telle qu’elle était à l’ouverture de ce formulaire.")
                color: Theme.inkSoft
                font.pixelSize: Theme.textNote
            }
            Row {
                id: ways
                readonly property bool below: parent.width < 440 || Theme.textScale > 115

                anchors.right: parent.right
                y: below ? parent.height - height : Math.max(0, (parent.height - height) / 2)
                spacing: 8

                ActionButton {
                    text: qsTr("Choisir…")
                    Accessible.name: qsTr("Choisir une image")
                    usable: !zone.full && !zone.model.busy
                    onClicked: zone.model.choose()
                }
                ActionButton {
                    text: qsTr("Capturer vorle")
                    usable: zone.model.windowImage.length > 0 && !zone.full && !zone.model.busy
                    onClicked: zone.model.joinWindow()
                }
            }
        }
        Flow {
            width: parent.width
            visible: zone.model.pictures.length > 0
            spacing: 8
            Accessible.role: Accessible.List
            Accessible.name: qsTr("Images jointes")

            Repeater {
                model: zone.model.pictures

                Rectangle {
                    id: joined
                    required property int index
                    required property pictureRow modelData

                    width: 100
                    height: 72
                    radius: 8
                    color: Theme.sunken
                    border.width: 1
                    border.color: Theme.line
                    activeFocusOnTab: true
                    Accessible.role: Accessible.ListItem
                    Accessible.name: modelData.name
                    Accessible.description: qsTr("Effacer la retire")
                    Accessible.focusable: true
                    Accessible.focused: activeFocus
                    Keys.onDeletePressed: zone.model.remove(index)
                    Keys.onPressed: event => {
                        if (event.key === Qt.Key_Backspace) {
                            event.accepted = true;
                            zone.model.remove(index);
                        }
                    }

                    Image {
                        anchors.fill: parent
                        anchors.margins: 6
                        fillMode: Image.PreserveAspectFit
                        source: joined.modelData.image
                        cache: false
                        Accessible.ignored: true
                    }
                    Rectangle {
                        anchors.centerIn: cross
                        width: 24
                        height: 24
                        radius: 12
                        color: Theme.card
                        border.width: 1
                        border.color: Theme.line
                    }
                    CrossButton {
                        id: cross
                        anchors.right: parent.right
                        anchors.top: parent.top
                        anchors.margins: -6
                        what: joined.modelData.name
                        onClicked: zone.model.remove(joined.index)
                    }
                    FocusRing {
                        radius: 11
                        shown: joined.activeFocus
                    }
                }
            }
        }
    }
}
