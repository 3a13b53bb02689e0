import QtQuick
import Vorle.Models

// What each action of the keyboard map does in the window.
QtObject {
    id: actions

    required property var window // Main
    required property var panels
    required property var menu // SideBar
    required property var notch // NotchPanel, once there was a run

    readonly property var shell: window.shell

    function decide(action: int, act: var) {
        const list = window.sections.topics;
        const id = window.chosenId;
        if (list === null || id === "" || !window.screen.ready()) {
            return;
        }
        const row = list.rowOf(id);
        const refusal = list.value(row, TopicListModel.Refusal);
        if (refusal.length > 0 && action !== KeyboardMap.Dismiss) {
            window.tell(refusal);
            return;
        }
        const title = list.value(row, TopicListModel.Title);
        // The line that stays behind stands over the next card, or under the one before where the
        // next is of another tier.
        const heading = at => list.value(at, TopicListModel.Section);
        const next = list.topicIdAt(row + 1);
        const apart = window.screen.headings && row > 0 && next !== "" && heading(row) !== heading(row + 1);
        const section = window.sections.current;
        const enlarged = window.screen.enlarged;
        const connection = (topicId, went) => {
            window.ghost = { section: section, topicId: topicId, went: went, title: title, beforeId: apart ? "" : next, afterId: apart ? list.topicIdAt(row - 1) : "" };
            if (enlarged) {
                window.word.show(qsTr("%1 : %2").arg(went).arg(title)); // the line lies under the page
            }
        };
        shell.decisions.decided.connect(connection);
        act(id);
        shell.decisions.decided.disconnect(connection);
        if (list.rowOf(id) >= 0) {
            window.ghost = null; // it stays in this section
        } else {
            window.ghostShown();
        }
    }
    function perform(action: int) {
        const decisions = shell.decisions;
        switch (action) {
        case KeyboardMap.Search:
            panels.open(panels.searchPanel);
            break;
        case KeyboardMap.AddTopic:
            panels.add();
            break;
        case KeyboardMap.GoInbox:
        case KeyboardMap.GoProgram:
        case KeyboardMap.GoReserve:
        case KeyboardMap.GoLibrary:
        case KeyboardMap.GoTerritory:
        case KeyboardMap.GoReport:
            window.go(window.keyboard.target(action));
            break;
        case KeyboardMap.GoMenu:
            menu.focusCurrent();
            break;
        case KeyboardMap.GoContent:
            window.screen.focusContent();
            break;
        case KeyboardMap.RunNow:
            shell.run.start();
            break;
        case KeyboardMap.Undo:
            window.tell(decisions.undo());
            break;
        case KeyboardMap.Redo:
            window.tell(decisions.redo());
            break;
        case KeyboardMap.OpenSettings:
            panels.open(panels.settingsPanel);
            break;
        case KeyboardMap.ShowShortcuts:
            panels.open(panels.shortcutsPanel.shown ? null : panels.shortcutsPanel);
            break;
        case KeyboardMap.Previous:
            window.screen.move(-1);
            break;
        case KeyboardMap.Next:
            window.screen.move(1);
            break;
        case KeyboardMap.PreviousTopic:
            window.screen.nextTopic(-1);
            break;
        case KeyboardMap.NextTopic:
            window.screen.nextTopic(1);
            break;
        case KeyboardMap.ToggleCard:
            if (window.listing && window.chosenId !== "") {
                window.screen.enlarged = !window.screen.enlarged;
            }
            break;
        case KeyboardMap.CloseCard:
            if (window.listing) {
                window.screen.enlarged = false;
            }
            if (notch !== null) {
                notch.dismissed = true;
            }
            break;
        case KeyboardMap.FirstStep:
            if (window.chosenId !== "" && window.screen.ready()) {
                shell.firstStep(window.chosenId);
            }
            break;
        case KeyboardMap.ReadAgain:
            shell.retry(window.chosenId);
            break;
        case KeyboardMap.Keep:
            decide(action, id => decisions.keep(id));
            break;
        case KeyboardMap.Later:
            decide(action, id => decisions.later(id));
            break;
        case KeyboardMap.Dismiss:
            decide(action, id => decisions.dismiss(id));
            break;
        case KeyboardMap.Done:
            decide(action, id => decisions.done(id, ""));
            break;
        case KeyboardMap.Postpone:
            decide(action, id => decisions.postpone(id));
            break;
        case KeyboardMap.Remove:
            decide(action, id => decisions.removeFromProgram(id));
            break;
        case KeyboardMap.BackToTriage:
            decide(action, id => decisions.backToTriage(id));
            break;
        case KeyboardMap.WorthMeh:
            decide(action, id => decisions.verdict(id, "meh"));
            break;
        case KeyboardMap.WorthUseful:
            decide(action, id => decisions.verdict(id, "useful"));
            break;
        case KeyboardMap.WorthGem:
            decide(action, id => decisions.verdict(id, "gem"));
            break;
        }
    }
}
