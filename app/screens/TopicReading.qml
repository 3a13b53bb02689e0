import QtQuick
import Vorle

// The reading page in its section: read when one is first opened.
ReadingPage {
    id: page

    required property TopicScreen screen

    shell: screen.shell
    selection: screen.selection
    topic: screen.read
    section: screen.title
    actions: screen.shell.actions.buttons(screen.number, topic)
    onAct: action => screen.act(action)
}
