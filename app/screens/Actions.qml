import QtQuick
import Vorle
import Vorle.Models

// Each action of the keyboard map in the window: what it does to a topic is `shell.actions`' own,
// what lies over the window and where the keyboard goes is told here.
QtObject {
    id: actions

    required property Shell shell
    required property SectionScreen screen // the chosen section's
    required property PanelsLater panels
    required property SideBar menu

    signal putAway // what one is done with, wherever it shows

    // Whether it was done: what it would fall on may have had to be brought into view first.
    function perform(action: int): bool {
        if (shell.actions.needsSight(action) && !screen.ready()) {
            return false;
        }
        act(action);
        return true;
    }
    function act(action: int) {
        if (action === KeyboardMap.CloseCard) {
            putAway();
        }
        if (action === KeyboardMap.Undo && screen.undo()) {
            return;
        }
        if (shell.actions.perform(action) || shell.commands.perform(action)) {
            return;
        }
        switch (action) {
        case KeyboardMap.Search:
            panels.open(PanelHost.Search);
            break;
        case KeyboardMap.AddTopic:
            panels.open(PanelHost.AddLink);
            break;
        case KeyboardMap.Correct:
            panels.correct(shell.actions.selection.currentId);
            break;
        case KeyboardMap.OpenSettings:
            panels.open(PanelHost.Settings);
            break;
        case KeyboardMap.SendFeedback:
            panels.open(PanelHost.Feedback);
            break;
        case KeyboardMap.LookForUpdate:
            shell.screens.updates.look();
            panels.open(PanelHost.Update);
            break;
        case KeyboardMap.ShowUpdate:
            panels.open(PanelHost.Update);
            break;
        case KeyboardMap.ShowShortcuts:
            if (panels.isShown(PanelHost.Shortcuts)) {
                panels.close();
            } else {
                panels.open(PanelHost.Shortcuts);
            }
            break;
        case KeyboardMap.RunNow:
            shell.run.start();
            break;
        case KeyboardMap.StopRun:
            shell.run.stop();
            break;
        case KeyboardMap.GoMenu:
            menu.focusCurrent();
            break;
        case KeyboardMap.GoContent:
            screen.focusContent();
            break;
        case KeyboardMap.Previous:
            screen.move(-1);
            break;
        case KeyboardMap.Next:
            screen.move(1);
            break;
        default:
            if (action >= KeyboardMap.GoInbox && action <= KeyboardMap.GoReport) {
                shell.sections.current = shell.keyboard.target(action);
                screen.focusContent();
            }
        }
    }
}
