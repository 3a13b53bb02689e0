import QtQuick
import Vorle
import Vorle.Models

// One topic of a list: a glance while closed; gist, why, first step and actions while it is the
// chosen one.
Item {
    id: card

    required property topicCard topic
    property bool open: false
    property bool showActions: true
    property var actions: [] // CardButton
    property bool settled: false // moves only once it has been shown
    property bool still: false // does not move
    property bool tight: false // in a low window: open, it keeps to what fits
    property bool tiny: false // in the lowest: to its title, gist, why and buttons

    signal chosen
    signal enlarged
    signal act(int action)


    readonly property int openPadding: tiny ? 14 : Theme.cardPadding + 2
    readonly property real bodyHeight: Math.max(badge.size, words.implicitHeight)
    readonly property real wholeHeight: bodyHeight + 2 * (open ? openPadding : 17) // once it has moved
    readonly property real headHeight: content.y + (details.active ? details.y : bodyHeight) // down to its title
    clip: true
    Accessible.role: Accessible.ListItem
    Accessible.name: topic.badge.name + ". " + topic.title
    Accessible.description: topic.gist
    Accessible.selected: open
    Accessible.focusable: true
    Accessible.focused: open
    Accessible.onPressAction: chosen()
    onWholeHeightChanged: {
        if (settled && !still && Theme.calm > 0) {
            glide.to = wholeHeight;
            glide.restart();
        } else {
            glide.stop();
            height = wholeHeight;
        }
    }
    Component.onCompleted: settleSoon()

    // Ends what moves, as the next key does.
    function arrive() {
        glide.complete();
    }
    function settleSoon() {
        Qt.callLater(() => card.settled = true); // qmllint disable
    }

    // Takes its height at once, where a column would take it with the next frame.
    function arrange() {
        (details.item as CardDetails)?.arrange();
        words.forceLayout();
    }

    NumberAnimation {
        id: glide
        target: card
        property: "height"
        duration: Theme.calm
        easing.type: Easing.OutCubic
    }

    Rectangle {
        anchors.fill: face
        anchors.topMargin: 3
        anchors.bottomMargin: -2
        radius: Theme.radiusCard
        color: Theme.shadow
        visible: card.open
    }
    Rectangle {
        id: face
        anchors.fill: parent
        anchors.bottomMargin: card.open ? 3 : 0
        radius: Theme.radiusCard
        color: card.open ? Theme.raised : hover.hovered ? Theme.raised : Theme.card
        opacity: card.topic.waits && !card.open ? 0.72 : 1
        border.width: card.open ? 2 : 1
        border.color: card.open ? Theme.accent : Theme.line
    }
    HoverHandler {
        id: hover
    }
    TapHandler {
        onSingleTapped: card.chosen()
        onDoubleTapped: card.enlarged()
    }

    Item {
        id: content
        x: Theme.cardPadding
        y: card.open ? card.openPadding : 17
        width: parent.width - 2 * Theme.cardPadding
        height: card.bodyHeight

        ScoreBadge {
            id: badge
            y: card.open ? 2 : (card.bodyHeight - size) / 2
            look: card.topic.badge
            size: card.open ? 64 : 50
            x: card.open ? 2 : 1
        }
        Text {
            visible: card.topic.formerScore >= 0
            anchors.horizontalCenter: badge.horizontalCenter
            y: badge.y + badge.height + 6
            text: visible ? qsTr("avant : %1").arg(card.topic.formerScore) : ""
            color: Theme.inkFaint
            font.family: Theme.textFamily
            font.pixelSize: Theme.textSmall
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }

        Column {
            id: words
            x: badge.width + (card.open ? 26 : 22)
            width: parent.width - x
            y: card.open ? 0 : (card.bodyHeight - implicitHeight) / 2
            spacing: card.open ? (card.tiny ? 6 : 12) : 5

            Item {
                id: line

                // What the place and the facts share; the deadline is never cut.
                readonly property real room: width - (due.visible ? due.implicitWidth + 12 : 0) - (moved.visible ? moved.implicitWidth + 12 : 0)

                width: parent.width
                implicitHeight: Math.max(chip.visible ? chip.implicitHeight : 0, factsLine.implicitHeight)

                Chip {
                    id: chip
                    width: Math.min(implicitWidth, line.room)
                    text: card.topic.subject
                    anchors.verticalCenter: parent.verticalCenter
                }
                Label {
                    id: factsLine
                    x: chip.visible ? chip.width + 10 : 0
                    width: Math.max(0, line.room - x)
                    visible: width > 40
                    anchors.verticalCenter: parent.verticalCenter
                    text: card.topic.facts
                    color: Theme.inkFaint
                    font.pixelSize: Theme.textNote
                    lineHeight: 1.1
                    wrapMode: Text.NoWrap
                    elide: Text.ElideRight
                }
                Label {
                    id: moved
                    visible: card.topic.moved
                    anchors.right: due.visible ? due.left : parent.right
                    anchors.rightMargin: due.visible ? 12 : 0
                    anchors.verticalCenter: parent.verticalCenter
                    text: visible ? qsTr("a bougé") : ""
                    color: Theme.accent
                    font.pixelSize: Theme.textNote
                    font.weight: Font.DemiBold
                    lineHeight: 1.1
                }
                Label {
                    id: due
                    visible: text.length > 0
                    anchors.right: parent.right
                    anchors.verticalCenter: parent.verticalCenter
                    text: card.topic.urgencyText
                    color: Theme.accent
                    font.pixelSize: Theme.textNote
                    font.weight: Font.DemiBold
                    lineHeight: 1.1
                }
            }
            Title {
                width: parent.width
                text: card.topic.title
                size: card.open && !card.tiny ? Theme.titleOpen : Theme.titleCard
                maximumLineCount: card.open ? (card.tiny ? 1 : card.tight ? 2 : 4) : 1
                elide: Text.ElideRight
            }
            VersionLine {
                width: parent.width
                text: card.open && !card.tiny ? card.topic.versionText : ""
            }
            Label {
                visible: !card.open && text.length > 0
                width: parent.width
                text: card.topic.gist
                color: Theme.inkSoft
                maximumLineCount: 1
                wrapMode: Text.NoWrap
                elide: Text.ElideRight
                lineHeight: 1.15
            }
            Loader {
                id: details
                active: card.open
                visible: active
                width: parent.width
                sourceComponent: CardDetails {
                    topic: card.topic
                    actions: card.actions
                    showActions: card.showActions
                    tight: card.tight
                    tiny: card.tiny
                    before: words.x
                    onAct: action => card.act(action)
                }
            }
        }
    }
}
