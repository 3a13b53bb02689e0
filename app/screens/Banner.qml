import QtQuick
import Vorle
import Vorle.Models

// Over the content: what went wrong, the rest of a run that waits to be told, or a run that did not
// happen. One at a time.
Rectangle {
    id: banner

    required property RunModel run
    property string notice: ""
    property string remedy: "" // what can be done about the notice, "" for nothing
    readonly property bool failed: run.lastError.length > 0 && !run.running
    readonly property bool offered: run.waitingOffered && !failed
    readonly property bool missed: run.missed && !run.running && !offered

    signal runAsked
    signal territoryAsked
    signal noticeDismissed
    signal remedyAsked
    signal gone // and the keyboard was on it

    // What its button does about what it speaks of.
    readonly property string help: notice.length > 0 ? (remedy.length > 0 ? remedy : qsTr("Compris")) : offered ? qsTr("Continuer maintenant") : !failed ? run.startLabel : run.nothingToSearch ? qsTr("Ouvrir Ton territoire") : qsTr("Réessayer")

    function takeHelp() {
        if (notice.length > 0) {
            remedy.length > 0 ? remedyAsked() : noticeDismissed();
        } else if (failed && run.nothingToSearch) {
            territoryAsked();
        } else if (offered) {
            run.goOn();
        } else {
            runAsked();
        }
    }
    function putAway() {
        if (notice.length > 0) {
            noticeDismissed();
        } else if (offered) {
            run.giveUpRest();
        } else {
            away = true;
        }
    }

    // Sent away, until there is another.
    property bool away: false
    readonly property string about: failed ? run.lastError : offered ? run.waitingText : run.missedTitle
    onAboutChanged: away = false

    Connections {
        target: banner.run

        function onOutcomeChanged() {
            banner.away = false; // the same again is told again
        }
    }

    readonly property string headText: notice.length > 0 ? "" : failed ? run.lastErrorTitle : offered ? run.waitingTitle : run.missedTitle
    readonly property string detailText: notice.length > 0 ? notice : failed ? run.lastError : offered ? run.waitingText : run.missedText

    visible: notice.length > 0 || offered || ((missed || failed) && !away)
    onVisibleChanged: if (!visible && parts.activeFocus) gone()
    height: visible ? Math.max(58, parts.implicitHeight + 24) : 0
    color: Theme.accentTint
    z: 3
    Accessible.role: Accessible.AlertMessage
    Accessible.name: headText + " " + detailText

    Loader {
        id: parts
        anchors.fill: parent
        active: banner.visible
        sourceComponent: Item {
            implicitHeight: words.implicitHeight

            Column {
                id: words
                anchors.left: parent.left
                anchors.leftMargin: Theme.margin
                anchors.right: later.visible ? later.left : act.left
                anchors.rightMargin: 16
                anchors.verticalCenter: parent.verticalCenter
                spacing: 2

                Label {
                    width: parent.width
                    visible: text.length > 0
                    text: banner.headText
                    font.weight: Font.DemiBold
                    lineHeight: 1.2
                }
                Label {
                    width: parent.width
                    text: banner.detailText
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
                text: banner.notice.length === 0 && banner.offered ? qsTr("Laisser") : qsTr("Pas maintenant")
                onClicked: banner.putAway()
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
    }
}
