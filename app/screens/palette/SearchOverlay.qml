import QtQuick
import QtQuick.Templates as T
import Vorle
import Vorle.Models

// ⌘K: what can be done and all that is held, by a few letters.
Panel {
    id: overlay

    required property CommandPalette model
    property bool awaited: false // ↩ came before the answer
    property bool pointed: false // the mouse moved since the last key: a row under one that rests is not meant

    readonly property real wanted: model.headings * Theme.grown(30) + model.lines * Theme.grown(38) + model.recents * Theme.grown(42) + model.hits * Theme.grown(54)

    signal picked(int section, string topicId)
    signal commanded(int action)

    name: qsTr("Rechercher")
    nearTop: true
    sheetWidth: 640
    padding: 0
    sheetHeight: Math.min(height * 0.9 - 20, head.height + foot.height + (wanted > 0 ? wanted + 2 * results.inset : Theme.grown(72)))
    onShownChanged: {
        awaited = false;
        pointed = false;
        if (shown) {
            overlay.model.open();
            field.selectAll();
            field.forceActiveFocus();
        } else {
            overlay.model.close();
        }
    }
    onClosed: field.clear() // left without a choice: the next time begins anew

    function accept() {
        awaited = model.busy;
        if (!awaited) {
            take(model.current);
        }
    }
    function take(row: int) {
        const entry = model.at(row);
        if (entry.topic) {
            picked(entry.section, entry.topicId);
        } else if (entry.action !== KeyboardMap.NoAction) {
            field.clear();
            commanded(entry.action);
        }
    }
    function step(rows: int) {
        awaited = false;
        pointed = false;
        model.step(rows);
        Qt.callLater(tell); // qmllint disable
    }
    function tell() {
        voice.pointAt(results.currentItem);
    }

    Announcer {
        id: voice
        Accessible.role: Accessible.Notification
        Accessible.name: words
    }
    Connections {
        target: overlay.model

        function onBusyChanged() {
            if (overlay.model.busy || !overlay.shown) {
                return;
            }
            if (overlay.awaited) {
                overlay.accept();
            } else if (field.text.length > 0) {
                const first = overlay.model.at(overlay.model.current).plain;
                voice.say(first.length > 0 ? qsTr("%1. %2").arg(overlay.model.countText).arg(first) : overlay.model.countText);
            }
        }
    }

    Item {
        id: head
        width: parent.width
        height: Theme.grown(56)

        TextEntry {
            id: field
            height: parent.height
            width: leave.x - 8
            leftPadding: 20
            rightPadding: 8
            font.pixelSize: Theme.scaled(18)
            focus: true
            background: null
            maximumLength: 200
            placeholderText: qsTr("Chercher un sujet ou une commande")
            onTextChanged: {
                overlay.awaited = false;
                overlay.pointed = false;
                overlay.model.query = text;
            }
            Keys.onDownPressed: overlay.step(1)
            Keys.onUpPressed: overlay.step(-1)
            Keys.onReturnPressed: event => event.isAutoRepeat || overlay.accept()
            Keys.onEnterPressed: event => event.isAutoRepeat || overlay.accept()
            Keys.onPressed: event => {
                const steps = { [Qt.Key_PageUp]: -8, [Qt.Key_PageDown]: 8 };
                if (event.key in steps) {
                    overlay.step(steps[event.key]);
                    event.accepted = true;
                }
            }
        }
        KeyCap {
            id: leave
            anchors.right: parent.right
            anchors.rightMargin: 20
            anchors.verticalCenter: parent.verticalCenter
            keys: qsTr("Échap")
            Accessible.ignored: false
            Accessible.role: Accessible.Button
            Accessible.name: qsTr("Fermer")
            Accessible.onPressAction: overlay.closed()

            TapHandler {
                onTapped: overlay.closed()
            }
        }
        Rectangle {
            anchors.bottom: parent.bottom
            width: parent.width
            height: 1
            color: Theme.line
        }
    }
    ListView {
        id: results

        readonly property int inset: 8

        anchors.top: head.bottom
        anchors.bottom: foot.top
        width: parent.width
        topMargin: inset
        bottomMargin: inset
        clip: true
        model: overlay.model
        currentIndex: overlay.model.current
        boundsBehavior: Flickable.StopAtBounds
        highlightMoveDuration: 0
        keyNavigationEnabled: false
        cacheBuffer: 600 // rows that come into sight stand already
        T.ScrollBar.vertical: ScrollLine {}

        HoverHandler {
            property point last

            onPointChanged: {
                if (point.scenePosition !== last) {
                    overlay.pointed = last !== Qt.point(0, 0) && hovered;
                    last = point.scenePosition;
                }
            }
        }
        Accessible.role: Accessible.List
        Accessible.name: qsTr("Résultats")

        delegate: PaletteRow {
            required property int index

            pointed: overlay.pointed
            x: results.inset
            width: results.width - 2 * x
            onPicked: overlay.take(index)
        }
    }
    Label {
        anchors.centerIn: results
        width: parent.width - 40
        horizontalAlignment: Text.AlignHCenter
        visible: overlay.wanted === 0 && !overlay.model.busy
        text: overlay.model.countText
        color: Theme.inkSoft
        elide: Text.ElideMiddle
        wrapMode: Text.NoWrap
    }
    PaletteFoot {
        id: foot
        anchors.bottom: parent.bottom
        width: parent.width
        text: overlay.wanted > 0 ? overlay.model.countText : ""
    }
}
