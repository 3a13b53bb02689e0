import QtQuick
import QtQuick.Controls.Basic
import Vorle

// A section that lists topics: "À trier", "Programme", "Réserve" and "Bibliothèque".
FocusScope {
    id: section

    required property string title
    required property string subtitle
    required property var model
    required property var actions
    required property string hint
    property bool headings: false // tier headings between the cards
    property string emptyTitle: ""
    property string emptyText: ""
    property var emptyActions: [] // { label, action }
    property var ghost: null // { topicId, went, title, beforeId }
    property string undoKeys: ""
    property string searchKeys: ""
    property alias header: extra.data
    readonly property var current: list.currentItem ? list.currentItem.topic : null
    readonly property string currentId: current ? current.topicId : ""
    property alias enlarged: reading.shown
    required property var details

    signal act(int action)
    signal undoAsked
    signal searchAsked
    signal emptyAct(int action)
    signal linkOpened(string url)
    signal noteEdited(string topicId, string text)
    signal correctionAsked(string topicId)

    Accessible.role: Accessible.Pane
    Accessible.name: title

    function move(step: int) {
        if (enlarged) {
            reading.scrollBy(step * 120);
            return;
        }
        const next = Math.max(0, Math.min(list.count - 1, list.currentIndex + step));
        list.currentIndex = next;
    }
    function nextTopic(step: int) {
        list.currentIndex = Math.max(0, Math.min(list.count - 1, list.currentIndex + step));
    }
    function show(topicId: string): bool {
        const row = model.rowOf(topicId);
        if (row < 0) {
            return false;
        }
        list.currentIndex = row;
        list.positionViewAtIndex(row, ListView.Contain);
        return true;
    }
    function focusContent() {
        list.forceActiveFocus();
    }

    Item {
        id: head
        x: Theme.margin
        width: parent.width - 2 * Theme.margin
        height: titles.implicitHeight + (extra.visibleChildren.length > 0 ? extra.childrenRect.height + 16 : 0)

        SectionHead {
            id: titles
            width: parent.width
            title: section.title
            subtitle: section.subtitle
            searchKeys: section.searchKeys
            onSearchAsked: section.searchAsked()
        }
        Item {
            id: extra
            y: titles.implicitHeight + 14
            width: parent.width
            height: childrenRect.height
        }
    }

    ListView {
        id: list
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.top: head.bottom
        anchors.bottom: hintLine.top
        anchors.topMargin: 12
        leftMargin: Theme.margin
        rightMargin: Theme.margin
        bottomMargin: 24
        clip: true
        focus: true
        model: section.model
        spacing: 0
        boundsBehavior: Flickable.StopAtBounds
        keyNavigationEnabled: false
        highlightFollowsCurrentItem: true
        highlightRangeMode: ListView.ApplyRange
        preferredHighlightBegin: section.headings ? 44 : 4 // its heading stays in sight
        preferredHighlightEnd: Math.max(120, height - 24)
        highlightMoveDuration: Theme.calm
        highlightResizeDuration: 0
        cacheBuffer: 400
        reuseItems: false
        visible: count > 0 || section.ghost !== null
        Accessible.role: Accessible.List
        Accessible.name: section.title
        section.property: section.headings ? "section" : ""
        section.criteria: ViewSection.FullString
        section.delegate: Item {
            id: heading
            required property string section
            width: list.width - 2 * Theme.margin
            height: 40

            Title {
                anchors.bottom: parent.bottom
                anchors.bottomMargin: 10
                text: heading.section
                color: Theme.inkFaint
                size: Theme.titleSmall
                font.weight: Font.DemiBold
            }
        }
        ScrollBar.vertical: ScrollBar {
            width: 9
        }
        onCountChanged: if (currentIndex < 0 && count > 0) currentIndex = 0
        onCurrentIndexChanged: if (currentIndex < 0 && count > 0) currentIndex = 0

        move: Transition {
            NumberAnimation {
                properties: "y"
                duration: Theme.calm
                easing.type: Easing.OutCubic
            }
        }
        displaced: Transition {
            NumberAnimation {
                properties: "y"
                duration: Theme.calm
                easing.type: Easing.OutCubic
            }
        }
        footer: Item {
            width: list.width - 2 * Theme.margin
            height: lastGhost.visible ? lastGhost.height + Theme.cardGap : 0

            GhostLine {
                id: lastGhost
                width: parent.width
                visible: section.ghost !== null && section.ghost.beforeId === ""
                went: section.ghost?.went ?? ""
                title: section.ghost?.title ?? ""
                undoKeys: section.undoKeys
                onUndo: section.undoAsked()
            }
        }
        delegate: Item {
            id: row

            required property int index
            required property var model
            readonly property var topic: model
            readonly property bool ghostHere: section.ghost !== null && section.ghost.beforeId === model.topicId

            width: list.width - 2 * Theme.margin
            height: card.height + Theme.cardGap + (ghostHere ? ghostLine.height + Theme.cardGap : 0)

            GhostLine {
                id: ghostLine
                width: parent.width
                visible: row.ghostHere
                went: section.ghost?.went ?? ""
                title: section.ghost?.title ?? ""
                undoKeys: section.undoKeys
                onUndo: section.undoAsked()
            }
            TopicCard {
                id: card
                y: row.ghostHere ? ghostLine.height + Theme.cardGap : 0
                width: parent.width
                topic: row.model
                open: row.ListView.isCurrentItem
                actions: section.actions
                onChosen: {
                    list.currentIndex = row.index;
                    list.forceActiveFocus();
                }
                onEnlarged: {
                    list.currentIndex = row.index;
                    section.enlarged = true;
                }
                onAct: action => section.act(action)
            }
        }
    }

    EmptyState {
        anchors.fill: parent
        anchors.topMargin: head.height
        visible: list.count === 0 && section.ghost === null
        title: section.emptyTitle
        text: section.emptyText
        buttons: section.emptyActions
        onAct: action => section.emptyAct(action)
    }
    HintLine {
        id: hintLine
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.bottom: parent.bottom
        text: section.hint
        visible: list.count > 0 || section.ghost !== null
    }
    ReadingPage {
        id: reading
        anchors.fill: parent
        topic: shown ? section.current : null
        details: section.details
        actions: section.actions
        onAct: action => section.act(action)
        onClosed: section.enlarged = false
        onLinkOpened: url => section.linkOpened(url)
        onNoteEdited: (topicId, text) => section.noteEdited(topicId, text)
        onCorrectionAsked: topicId => section.correctionAsked(topicId)
    }
    onCurrentChanged: if (current === null) enlarged = false
}
