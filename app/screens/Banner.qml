import QtQuick
import Vorle
import Vorle.Models

// Over the content: a run that did not happen, or what went wrong. One at a time.
Rectangle {
    id: banner

    required property RunModel run
    property string notice: ""
    property string remedy: "" // what can be done about the notice, "" for nothing
    readonly property bool missed: run.missed && !run.running
    readonly property bool failed: run.lastError.length > 0 && !run.running

    signal runAsked
    signal territoryAsked
    signal noticeDismissed
    signal remedyAsked

    // What its button does about what it speaks of.
    readonly property string help: notice.length > 0 ? (remedy.length > 0 ? remedy : qsTr("Compris")) : !failed ? run.startLabel : run.nothingToSearch ? qsTr("Ouvrir Ton territoire") : qsTr("Réessayer")

    function takeHelp() {
        if (notice.length > 0) {
            remedy.length > 0 ? remedyAsked() : noticeDismissed();
        } else if (failed && run.nothingToSearch) {
            territoryAsked();
        } else {
            runAsked();
        }
    }

    // Sent away, until there is another.
    property bool away: false
    readonly property string about: missed ? run.missedTitle : run.lastError
    onAboutChanged: away = false

    Connections {
        target: banner.run

        function onOutcomeChanged() {
            banner.away = false; // the same again is told again
        }
    }

    visible: notice.length > 0 || ((missed || failed) && !away)
    height: visible ? Math.max(58, words.implicitHeight + 24) : 0
    color: Theme.accentTint
    z: 3
    Accessible.role: Accessible.AlertMessage
    Accessible.name: head.text + " " + detail.text

    Column {
        id: words
        anchors.left: parent.left
        anchors.leftMargin: Theme.margin
        anchors.right: later.visible ? later.left : act.left
        anchors.rightMargin: 16
        anchors.verticalCenter: parent.verticalCenter
        spacing: 2

        Label {
            id: head
            width: parent.width
            visible: text.length > 0
            text: banner.notice.length > 0 ? "" : banner.failed ? banner.run.lastErrorTitle : banner.run.missedTitle
            font.weight: Font.DemiBold
            lineHeight: 1.2
        }
        Label {
            id: detail
            width: parent.width
            text: banner.notice.length > 0 ? banner.notice : banner.failed ? banner.run.lastError : banner.run.missedText
            color: Theme.inkSoft
            lineHeight: 1.25
        }
    }
    ActionButton {
        id: later
        anchors.right: act.left
        anchors.rightMargin: 4
        anchors.verticalCenter: parent.verticalCenter
        visible: banner.notice.length === 0 || banner.remedy.length > 0
        quiet: true
        text: qsTr("Pas maintenant")
        onClicked: banner.notice.length > 0 ? banner.noticeDismissed() : banner.away = true
    }
    ActionButton {
        id: act
        anchors.right: parent.right
        anchors.rightMargin: Theme.margin
        anchors.verticalCenter: parent.verticalCenter
        text: banner.help
        onClicked: banner.takeHelp()
    }
}
