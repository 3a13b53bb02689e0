import QtQuick
import Vorle
import Vorle.Models

// What stands in a section where no topic is left: read when there is none, or once the list stands.
EmptyState {
    id: empty

    required property TopicScreen screen
    required property TopicList list
    // The end of triage does not wait for the last line to go, where there is room for both.
    readonly property TriageEnd end: screen.number === Section.Inbox ? screen.shell.end : null
    readonly property bool reached: list.count === 0 && (end?.groups.length ?? 0) > 0 && besideLine

    lineRoom: counted ? 16 + Theme.ghostHeight : 0
    visible: !list.filled || reached
    onReachedChanged: if (reached && list.filled) land()
    tally: end?.text ?? ""
    groups: end?.groups ?? []
    undoKeys: list.undoKeys
    title: screen.current ? screen.shell.sections.emptyTitle : ""
    text: screen.current ? screen.shell.sections.emptyText : ""
    buttons: screen.current ? screen.shell.sections.emptyActions : []
    Accessible.role: Accessible.Grouping
    Accessible.name: title
    Accessible.description: counted ? `${tally} ${text}` : text
    onAct: action => screen.act(action)
    onVisibleChanged: {
        if (visible) {
            Qt.callLater(screen.pointAtChosen); // qmllint disable
        } else if (parent?.activeFocus) {
            screen.focusContent(); // not to a button that nobody sees
        }
    }

    Binding {
        target: empty.screen
        property: "endReached"
        value: empty.reached
    }
}
