import QtQuick
import Vorle
import Vorle.Models

// What lies over the window, one at a time.
PanelHost {
    id: panels

    readonly property list<PanelSlot> all: [search, shortcuts, addLink, correction, settings, bench, closing, calibration, send, apps, decisions, startAgain, feedback, update]
    // As PanelHost.Panel has them.
    readonly property list<PanelSlot> asked: [search, shortcuts, addLink, settings, closing, calibration, send, apps, startAgain, feedback, update]

    shown: search.shown || shortcuts.shown || addLink.shown || correction.shown || settings.shown || bench.shown || closing.shown || calibration.shown || send.shown || apps.shown || decisions.shown || startAgain.shown || feedback.shown || update.shown

    function open(panel: int) {
        switch (panel) {
        case PanelHost.AddLink:
            addLink.suggestion = shell.links.onPasteboard();
            break;
        case PanelHost.Calibration:
            shell.calibration.begin();
            break;
        case PanelHost.Feedback:
            if (!feedback.shown) { // asked for once more, it would show itself
                shell.screens.feedback.begin(Window.window);
            }
            break;
        }
        raise(asked[panel]);
    }
    function raise(slot: PanelSlot) {
        for (let i = 0; i < all.length; ++i) {
            if (all[i] !== slot) {
                all[i].hide();
            }
        }
        slot?.show();
    }
    function close() {
        raise(null);
    }
    function isShown(panel: int): bool {
        return asked[panel].shown;
    }
    function anyShown(): bool {
        for (let i = 0; i < all.length; ++i) {
            if (all[i].panel !== null && all[i].panel.shown) {
                return true;
            }
        }
        return false;
    }
    function correct(topicId: string) {
        raise(correction);
        (correction.panel as CorrectionPanel).open(topicId);
    }
    function showDecisions(reflex: reflexRow) {
        raise(decisions);
        (decisions.panel as DecisionsPanel).open(reflex);
    }

    PanelSlot {
        id: search
        onGone: panels.gone()
        sourceComponent: SearchOverlay {
            model: panels.shell.commandPalette
            onPicked: (section, topicId) => panels.found(section, topicId)
            onCommanded: action => panels.acted(action)
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
            onBenchAsked: panels.raise(bench)
            onFeedbackAsked: panels.open(PanelHost.Feedback)
            onUpdateAsked: {
                panels.shell.screens.updates.look();
                panels.open(PanelHost.Update);
            }
            onOnboardingAsked: {
                panels.close();
                panels.shell.onboarding.beginAgain();
            }
            onCalibrationAsked: {
                panels.shell.calibration.beginAgain();
                panels.raise(calibration);
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
            keyboard: panels.shell.keyboard
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
        id: feedback
        onGone: panels.gone()
        sourceComponent: FeedbackPanel {
            model: panels.shell.screens.feedback
        }
    }
    PanelSlot {
        id: update
        onGone: panels.gone()
        sourceComponent: UpdatePanel {
            model: panels.shell.screens.updates
        }
    }
    PanelSlot {
        id: closing
        onGone: panels.gone()
        sourceComponent: ClosingPanel {
            run: panels.shell.run
            agents: panels.shell.agentStates
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
                problem = panels.shell.links.add(url, note);
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
