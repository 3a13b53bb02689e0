import QtQuick
import Vorle
import Vorle.Models

// One topic of a list: a title and a line of facts while closed; gist, why, first step and actions
// while it is the chosen one.
Item {
    id: card

    required property topicCard topic
    property bool open: false
    property bool outlined: open // the chosen one, closed where its page stands beside the list
    property bool showActions: true
    property var actions: [] // CardButton
    property bool settled: false // moves only once it has been shown
    property string place: "" // "3 sur 34", for who listens
    property bool attended: false // the keyboard rests where it acts on the chosen one
    property bool late: false // it opens in the place of one that folds first
    property bool tight: false // in a low window: open, it keeps to what fits
    property bool tiny: false // in the lowest: to its title, gist, why and buttons

    signal chosen
    signal enlarged
    signal act(int action)
    signal menuAsked(point at) // in the window
    signal carried // its link is pulled away

    readonly property int padding: !open ? 18 : tiny ? 14 : 20
    readonly property real bodyHeight: Math.max(open ? 64 : 40, words.implicitHeight)
    // Beside its score. They tell it themselves, not item by item: each step on the way would break
    // all lines anew. Open it has its width at once, while the score still grows.
    readonly property real openWidth: width - 22 - 24 - 84
    readonly property real wordsX: badgeSize + (open ? 20 : 16)
    readonly property real wordsWidth: open ? openWidth : width - 20 - 20 - wordsX
    readonly property real wholeHeight: bodyHeight + 2 * padding + (open ? 2 : 0) // once it has moved
    readonly property real headHeight: content.y + (details.active ? details.y : bodyHeight) // down to its title

    // What moves, by one clock: its height and the badge's size, then how strong the details are.
    property real clock: 0 // ms
    property int begins: 0
    property int lasts: 0
    property int reveals: 0
    property real heightFrom: 0
    property real badgeFrom: 0
    property real badgeSize: open ? 64 : 40
    property real shown: 1

    clip: true
    Accessible.role: Accessible.ListItem
    Accessible.name: topic.badge.name + ". " + topic.title
    Accessible.description: outlined && Listening.active ? place + ". " + topic.told : place
    Accessible.selectable: true
    Accessible.selected: outlined
    Accessible.focusable: true
    Accessible.focused: outlined && attended
    Accessible.onPressAction: chosen()
    onOpenChanged: {
        shown = open && settled && Theme.reveal > 0 ? 0 : 1;
        move();
    }
    onWholeHeightChanged: move()
    onClockChanged: if (motion.running) follow()
    Component.onCompleted: settleSoon()

    // Ends what moves, as the next key does.
    function arrive() {
        if (motion.running) {
            motion.stop();
            rest();
        }
    }
    function settleSoon() {
        Qt.callLater(() => card.settled = true); // qmllint disable
    }
    // Takes its height at once, where a column would take it with the next frame.
    function arrange() {
        (details.item as CardDetails)?.arrange();
        words.forceLayout();
    }
    // Opens from a line of that height on: its own, that it left when it went.
    function unfold(line: real) {
        if (Theme.fold > 0) {
            settled = true;
            height = line;
            badgeSize = 40;
            shown = 0;
            move();
        }
    }
    function move() {
        motion.stop();
        if (!settled || Theme.fold === 0) {
            rest();
            return;
        }
        const follows = late && shown < 1;
        heightFrom = height;
        badgeFrom = badgeSize;
        begins = follows ? Theme.fold - Theme.rise : 0;
        lasts = follows ? Theme.rise : Theme.fold;
        // Where nothing folds over it there is no need to wait for the whole height.
        reveals = follows ? begins + lasts : lasts / 2;
        motion.to = Math.max(begins + lasts, shown < 1 ? reveals + Theme.reveal : 0);
        motion.start();
    }
    function follow() {
        const way = Theme.eased(clock - begins, lasts);
        height = heightFrom + (wholeHeight - heightFrom) * way;
        badgeSize = badgeFrom + ((open ? 64 : 40) - badgeFrom) * way;
        if (shown < 1) {
            shown = Math.max(shown, Math.min(1, (clock - reveals) / Theme.reveal));
        }
    }
    function rest() {
        height = wholeHeight;
        badgeSize = open ? 64 : 40;
        shown = 1;
    }

    NumberAnimation {
        id: motion
        target: card
        property: "clock"
        from: 0
        duration: to
        onFinished: card.rest()
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
        color: card.outlined || hover.hovered ? Theme.raised : Theme.card
        opacity: card.topic.waits && !card.outlined ? 0.72 : 1
        border.width: card.outlined ? 2 : 1
        border.color: card.outlined ? Theme.accent : hover.hovered ? Theme.edge : Theme.line
    }
    HoverHandler {
        id: hover
    }
    TapHandler {
        onSingleTapped: card.chosen()
        onDoubleTapped: card.enlarged()
        onLongPressed: card.menuAsked(point.scenePosition)
    }
    TapHandler {
        acceptedButtons: Qt.RightButton
        gesturePolicy: TapHandler.ReleaseWithinBounds
        onTapped: eventPoint => card.menuAsked(eventPoint.scenePosition)
    }
    // By the mouse; a finger scrolls. A button that is pressed stays pressed.
    DragHandler {
        target: null
        acceptedDevices: PointerDevice.Mouse | PointerDevice.TouchPad
        grabPermissions: PointerHandler.CanTakeOverFromHandlersOfDifferentType | PointerHandler.ApprovesTakeOverByAnything
        onActiveChanged: if (active) card.carried()
    }

    Item {
        id: content
        x: card.open ? 22 : 20
        y: card.padding
        width: parent.width - x - (card.open ? 24 : 20)
        height: card.bodyHeight

        ScoreBadge {
            id: badge
            y: card.open ? 0 : (card.bodyHeight - size) / 2
            look: card.topic.badge
            size: card.badgeSize
        }
        Loader {
            active: card.open && card.topic.formerScore >= 0
            anchors.horizontalCenter: badge.horizontalCenter
            y: 64 + 6
            sourceComponent: Text {
                text: qsTr("avant : %1").arg(card.topic.formerScore)
                color: Theme.inkFaint
                font.family: Theme.textFamily
                font.pixelSize: Theme.textSmall
                Accessible.role: Accessible.StaticText
                Accessible.name: text
            }
        }

        // While it moves, what is not uncovered yet stays off the edge.
        Item {
            x: card.wordsX
            width: card.wordsWidth
            height: card.height - card.padding - 8
            clip: motion.running

            Column {
                id: words
                width: card.wordsWidth
                y: card.open ? 0 : (card.bodyHeight - implicitHeight) / 2

                CardHead {
                    id: head
                    width: card.wordsWidth
                    topic: card.topic
                    open: card.open
                    tight: card.tight
                    tiny: card.tiny
                }
                Loader {
                    id: details
                    active: card.open
                    visible: active
                    width: card.openWidth
                    opacity: card.shown
                    enabled: card.shown > 0 // nothing unseen is pressed
                    sourceComponent: CardDetails {
                        topic: card.topic
                        actions: card.actions
                        showActions: card.showActions
                        tight: card.tight
                        tiny: card.tiny
                        before: 84
                        pictured: head.pictured
                        above: details.y
                        onAct: action => card.act(action)
                    }
                }
            }
        }
    }
}
