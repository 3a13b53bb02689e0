import QtQuick
import Vorle
import Vorle.Models

// The menu of a section's cards: read when one is first opened.
CardMenu {
    id: menu

    required property TopicScreen screen

    shell: screen.shell
    selection: screen.selection
    // A page that is open shows the topic by now: to ask for it once more would close it.
    onAct: action => {
        if (action !== KeyboardMap.ToggleCard || !screen.selection.enlarged) {
            screen.act(action);
        }
    }
    onGone: screen.focusContent()

    Connections {
        target: menu.screen

        function onMenuOpened(topic: topicCard, at: point, byKey: bool) {
            menu.open(topic, at, byKey);
        }
    }
}
