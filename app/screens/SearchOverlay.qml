import QtQuick
import QtQuick.Templates as T
import Vorle
import Vorle.Models

// ⌘K: everything held, as one types.
Panel {
    id: overlay

    required property TopicSearch search

    signal picked(int section, string topicId)

    name: qsTr("Rechercher")
    nearTop: true
    sheetWidth: 680
    sheetHeight: 42 + 2 * padding + (results.count > 0 ? 12 + Math.min(results.contentHeight, 460) : field.text.length > 0 ? 54 : 0)
    padding: 16
    onShownChanged: {
        if (shown) {
            overlay.search.refresh(); // what was written since
            field.selectAll();
            field.forceActiveFocus();
        }
    }

    function accept() {
        const hit = results.currentItem as SearchHit;
        if (hit) {
            overlay.picked(hit.section, hit.topicId);
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
        Keys.onReturnPressed: event => event.isAutoRepeat || overlay.accept()
        Keys.onEnterPressed: event => event.isAutoRepeat || overlay.accept()
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
        T.ScrollBar.vertical: ScrollLine {}
        Accessible.role: Accessible.List
        Accessible.name: qsTr("Résultats")
        onCountChanged: currentIndex = count > 0 ? 0 : -1

        delegate: SearchHit {
            width: results.width
            onPicked: overlay.picked(section, topicId)
        }
    }
}
