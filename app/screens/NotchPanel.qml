import QtQuick
import Vorle
import Vorle.Models

// Hangs from the top centre of the screen, under the notch where there is one: a run's progress,
// and for a few seconds its result.
Window {
    id: panel

    required property RunModel run
    required property Window mainWindow
    required property Actions actions
    property bool dismissed: false
    property bool resultShown: false

    signal opened

    // The main window tells the same: over it, while one works in it, this would only be in the way.
    readonly property bool wouldCover: mainWindow.active && (mainWindow.visibility === Window.Maximized || mainWindow.visibility === Window.FullScreen || (mainWindow.y < y + height && mainWindow.x < x + width && mainWindow.x + mainWindow.width > x))
    readonly property bool wanted: !dismissed && !wouldCover && (run.running || resultShown)

    transientParent: null
    // No tool window: on a Mac those go while another application is in front, which is when a run
    // that starts by itself would show.
    flags: Qt.ToolTip | Qt.FramelessWindowHint | Qt.WindowStaysOnTopHint | Qt.WindowDoesNotAcceptFocus
    color: "transparent"
    width: 400
    height: Theme.grown(76)
    x: Screen.virtualX + Math.round((Screen.width - width) / 2)
    y: Screen.virtualY
    visible: wanted
    title: qsTr("vorle, fouille")

    Connections {
        target: panel.actions

        function onPutAway() {
            panel.dismissed = true;
        }
    }
    Connections {
        target: panel.run

        function onRunningChanged() {
            if (panel.run.running) {
                panel.dismissed = false;
                panel.resultShown = false;
            } else {
                panel.resultShown = true;
                away.restart();
            }
        }
    }
    Timer {
        id: away
        interval: 6000
        onTriggered: panel.resultShown = false
    }

    Rectangle {
        anchors.fill: parent
        anchors.topMargin: -20
        radius: 20
        color: "#14110F" // as the notch itself, in both appearances
        Accessible.role: Accessible.Notification
        Accessible.name: status.text

        TapHandler {
            onTapped: panel.opened()
        }
        Mascot {
            id: ember
            x: 18
            y: 20 + (76 - height) / 2
            size: 36
            halo: Theme.accentPair.tintDark
            awake: panel.run.running
        }
        Text {
            id: status
            anchors.left: ember.right
            anchors.leftMargin: 12
            anchors.right: close.left
            anchors.rightMargin: 8
            y: 20 + (!panel.run.running ? (76 - height) / 2 : spent.text.length > 0 ? 10 : 18)
            text: panel.run.running ? panel.run.statusText : panel.run.lastResultText
            color: "#F4EDE3"
            font.family: Theme.textFamily
            font.pixelSize: Theme.textBody
            font.weight: Font.DemiBold
            elide: Text.ElideRight
            wrapMode: panel.run.running ? Text.NoWrap : Text.Wrap
            maximumLineCount: panel.run.running ? 1 : 3
            textFormat: Text.PlainText
            Accessible.ignored: true
        }
        Rectangle {
            visible: panel.run.running
            anchors.left: status.left
            anchors.right: status.right
            y: 20 + (spent.text.length > 0 ? 38 : 48)
            height: 4
            radius: 2
            color: "#3A342C"

            Rectangle {
                width: parent.width * panel.run.progress
                height: 4
                radius: 2
                color: Theme.accentPair.dark
            }
        }
        Text {
            id: spent
            anchors.left: status.left
            anchors.right: status.right
            y: 20 + 48
            text: panel.run.running ? panel.run.spentText : ""
            color: "#C3B7A7"
            font.family: Theme.textFamily
            font.pixelSize: Theme.textNote
            elide: Text.ElideRight
            textFormat: Text.PlainText
            Accessible.ignored: true
        }
        Item {
            id: close
            anchors.right: parent.right
            anchors.rightMargin: 12
            y: 20 + (76 - height) / 2
            width: Theme.hit
            height: Theme.hit
            Accessible.role: Accessible.Button
            Accessible.name: qsTr("Fermer")
            Accessible.onPressAction: panel.dismissed = true

            Text {
                anchors.centerIn: parent
                text: "×"
                color: "#C3B7A7"
                font.pixelSize: 20
                Accessible.ignored: true
            }
            TapHandler {
                onTapped: panel.dismissed = true
            }
        }
    }
}
