import QtQuick
import Vorle

// What lies over the window, one at a time.
Item {
    id: panels

    required property Shell shell

    readonly property list<PanelSlot> all: [search, shortcuts, addLink, correction, settings, closing, calibration]
    readonly property bool shown: search.shown || shortcuts.shown || addLink.shown || correction.shown || settings.shown || closing.shown || calibration.shown
    readonly property PanelSlot searchPanel: search
    readonly property PanelSlot shortcutsPanel: shortcuts
    readonly property PanelSlot settingsPanel: settings

    signal gone // one of them was put away
    signal added // a link
    signal found(int section, string topicId)
    signal quitAsked

    // Two would fight for the keyboard.
    function open(slot: PanelSlot) {
        for (let i = 0; i < all.length; ++i) {
            if (all[i] !== slot) {
                all[i].hide();
            }
        }
        slot?.show();
    }
    function close() {
        open(null);
    }
    // Asked of the panels themselves: a binding on them may not have been told yet.
    function anyShown(): bool {
        for (let i = 0; i < all.length; ++i) {
            if (all[i].panel !== null && all[i].panel.shown) {
                return true;
            }
        }
        return false;
    }
    function add() {
        addLink.suggestion = shell.linkOnPasteboard();
        open(addLink);
    }
    function askToClose() {
        open(closing);
    }
    function calibrate() {
        shell.calibration.begin();
        open(calibration);
    }
    function correct(topicId: string) {
        open(correction);
        (correction.panel as CorrectionPanel).open(topicId);
    }

    PanelSlot {
        id: search
        onGone: panels.gone()
        sourceComponent: SearchOverlay {
            search: panels.shell.search
            onPicked: (section, topicId) => panels.found(section, topicId)
        }
    }
    PanelSlot {
        id: shortcuts
        onGone: panels.gone()
        sourceComponent: ShortcutSheet {
            groups: panels.shell.keyboard.groups
        }
    }
    PanelSlot {
        id: settings
        onGone: panels.gone()
        sourceComponent: SettingsPanel {
            settings: panels.shell.settings
            agentInUse: panels.shell.agent
            terminals: panels.shell.terminals
        }
    }
    PanelSlot {
        id: calibration
        onGone: panels.gone()
        sourceComponent: CalibrationPanel {
            model: panels.shell.calibration
        }
    }
    PanelSlot {
        id: closing
        onGone: panels.gone()
        sourceComponent: ClosingPanel {
            run: panels.shell.run
            onConfirmed: panels.quitAsked()
        }
    }
    PanelSlot {
        id: addLink

        property string suggestion: ""

        onGone: panels.gone()
        sourceComponent: AddLink {
            suggestion: addLink.suggestion
            onAdded: (url, note) => {
                problem = panels.shell.addLink(url, note);
                if (problem.length === 0) {
                    addLink.hide();
                    panels.added();
                }
            }
        }
    }
    PanelSlot {
        id: correction
        onGone: panels.gone()
        sourceComponent: CorrectionPanel {
            shell: panels.shell
        }
    }
}
