import QtQuick
import QtQuick.Templates as T
import Vorle
import Vorle.Models

// The apps of this machine, found as one types; ↩ or Espace chooses.
Panel {
    id: panel

    required property AppsModel model

    name: model.only ? qsTr("Les apps que je peux nommer") : qsTr("Les apps que je ne nomme jamais")
    nearTop: true
    sheetWidth: 560
    sheetHeight: height * 0.8
    padding: 20
    onShownChanged: {
        if (shown) {
            model.filter = "";
            field.clear();
            list.currentIndex = 0;
            field.forceActiveFocus();
        }
    }

    function toggle(index: int) {
        const line = list.itemAtIndex(index) as AppLine;
        if (line) {
            model.choose(line.row.name, !line.row.chosen);
        }
    }

    Title {
        id: title
        text: panel.name
        size: Theme.titleCard
    }
    TextEntry {
        id: field
        anchors.top: title.bottom
        anchors.topMargin: 12
        width: parent.width
        focus: true
        placeholderText: qsTr("Chercher une app")
        onTextChanged: {
            panel.model.filter = text;
            list.currentIndex = 0;
        }
        Keys.onDownPressed: list.incrementCurrentIndex()
        Keys.onUpPressed: list.decrementCurrentIndex()
        Keys.onReturnPressed: event => event.isAutoRepeat || panel.toggle(list.currentIndex)
        Keys.onEnterPressed: event => event.isAutoRepeat || panel.toggle(list.currentIndex)
    }
    Label {
        anchors.top: field.bottom
        anchors.topMargin: 16
        visible: list.count === 0
        width: parent.width
        text: field.text.length > 0 ? qsTr("Aucune app ne s’appelle ainsi.") : qsTr("Je n’ai trouvé aucune app sur cette machine.")
        color: Theme.inkFaint
    }
    ListView {
        id: list
        anchors.top: field.bottom
        anchors.topMargin: 10
        anchors.bottom: foot.top
        anchors.bottomMargin: 10
        width: parent.width
        clip: true
        model: panel.model.choices
        boundsBehavior: Flickable.StopAtBounds
        highlightMoveDuration: 0
        keyNavigationEnabled: false
        T.ScrollBar.vertical: ScrollLine {}
        Accessible.role: Accessible.List
        Accessible.name: panel.name
        delegate: AppLine {
            width: list.width
            current: ListView.isCurrentItem
            onPicked: {
                list.currentIndex = index;
                panel.toggle(index);
            }
        }
    }
    Item {
        id: foot
        anchors.bottom: parent.bottom
        width: parent.width
        height: 38

        Label {
            anchors.verticalCenter: parent.verticalCenter
            text: qsTr("↑ ↓ parcourir · ↩ choisir")
            color: Theme.inkFaint
            font.pixelSize: Theme.textNote
        }
        ActionButton {
            anchors.right: parent.right
            text: qsTr("Fini")
            keys: qsTr("Échap")
            onClicked: panel.closed()
        }
    }
}
