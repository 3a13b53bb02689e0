import QtQuick
import Vorle
import Vorle.Models

// What lies over the window, one at a time.
Item {
    id: panels

    required property Shell shell

    readonly property list<PanelSlot> all: [search, shortcuts, addLink, correction, settings, bench, closing, calibration, send, apps, decisions, startAgain]
    readonly property bool shown: search.shown || shortcuts.shown || addLink.shown || correction.shown || settings.shown || bench.shown || closing.shown || calibration.shown || send.shown || apps.shown || decisions.shown || startAgain.shown
    readonly property PanelSlot searchPanel: search
    readonly property PanelSlot shortcutsPanel: shortcuts
    readonly property PanelSlot settingsPanel: settings
    readonly property PanelSlot sendPanel: send
    readonly property PanelSlot appsPanel: apps
    readonly property PanelSlot startAgainPanel: startAgain

    signal gone // one of them was put away
    signal added // a link
    signal found(int section, string topicId)
    signal quitAsked
    signal sectionAsked(int section)

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

    function showDecisions(reflex: reflexRow) {
        open(decisions);
        (decisions.panel as DecisionsPanel).open(reflex);
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
            shell: panels.shell
            onTerritoryAsked: panels.sectionAsked(Section.Territory)
            onReportAsked: panels.sectionAsked(Section.Report)
            onBenchAsked: panels.open(bench)
            onOnboardingAsked: {
                panels.close();
                panels.shell.onboarding.beginAgain();
            }
            onCalibrationAsked: {
                panels.shell.calibration.beginAgain();
                panels.open(calibration);
            }
        }
    }
    PanelSlot {
        id: bench
        onGone: panels.gone()
        sourceComponent: BenchScreen {
            bench: panels.shell.screens.bench
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
        id: send
        onGone: panels.gone()
        sourceComponent: SendPanel {
            preview: panels.shell.territory.preview
        }
    }
    PanelSlot {
        id: apps
        onGone: panels.gone()
        sourceComponent: AppPicker {
            model: panels.shell.territory.apps
        }
    }
    PanelSlot {
        id: decisions
        onGone: panels.gone()
        sourceComponent: DecisionsPanel {
            model: panels.shell.territory.reflexes
            onPicked: (section, topicId) => panels.found(section, topicId)
        }
    }
    PanelSlot {
        id: startAgain
        onGone: panels.gone()
        sourceComponent: ConfirmPanel {
            question: qsTr("Repartir de zéro ?")
            text: panels.shell.territory.reflexes.startAgainText
            confirmText: qsTr("Repartir de zéro")
            keepText: qsTr("Garder mes réflexes")
            onConfirmed: panels.shell.territory.reflexes.startAgain()
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
