import QtQuick
import Vorle.Models
import Vorle

// What lies over the window, one at a time.
Item {
    id: panels

    required property var window // Main

    readonly property var shell: window.shell
    readonly property var all: [search, shortcuts, addLink, correction, settings, closing]
    readonly property bool shown: search.shown || shortcuts.shown || addLink.shown || correction.shown || settings.shown || closing.shown
    readonly property PanelPlace searchPanel: search
    readonly property PanelPlace shortcutsPanel: shortcuts
    readonly property PanelPlace settingsPanel: settings

    // Two would fight for the keyboard.
    function open(place: PanelPlace) {
        for (const other of all) {
            if (other !== place) {
                other.hide();
            }
        }
        place?.show();
    }
    function close() {
        open(null);
    }
    // Asked of the panels themselves: a binding on them may not have been told yet.
    function anyShown(): bool {
        return all.some(place => place.item !== null && place.item.shown);
    }
    function add() {
        addLink.suggestion = shell.linkOnPasteboard();
        open(addLink);
    }
    function askToClose() {
        open(closing);
    }
    function correct(topics: var, topicId: string) {
        const row = topics.rowOf(topicId);
        const now = topics.value(row, TopicListModel.HasScore) ? topics.value(row, TopicListModel.Score) : -1;
        open(correction);
        (correction.item as CorrectionPanel).open(topicId, topics.value(row, TopicListModel.Title), shell.judgedScore(topicId), now, shell.correctionTags(topicId), shell.correctionText(topicId), shell.isCorrected(topicId));
    }

    PanelPlace {
        id: search
        onGone: panels.window.resume()
        sourceComponent: SearchOverlay {
            search: panels.shell.search
            onPicked: (section, topicId) => panels.window.showTopic(section, topicId)
        }
    }
    PanelPlace {
        id: shortcuts
        onGone: panels.window.resume()
        sourceComponent: ShortcutSheet {
            groups: panels.window.keyboard.groups
        }
    }
    PanelPlace {
        id: settings
        onGone: panels.window.resume()
        sourceComponent: SettingsPanel {
            shell: panels.shell
        }
    }
    PanelPlace {
        id: closing
        onGone: panels.window.resume()
        sourceComponent: ClosingPanel {
            run: panels.shell.run
            onConfirmed: panels.window.quitAsked()
        }
    }
    PanelPlace {
        id: addLink

        property string suggestion: ""

        onGone: panels.window.resume()
        sourceComponent: AddLink {
            suggestion: addLink.suggestion
            onAdded: (url, note) => {
                problem = panels.shell.addLink(url, note);
                if (problem.length === 0) {
                    addLink.hide();
                    panels.window.go(Section.Inbox);
                }
            }
        }
    }
    PanelPlace {
        id: correction
        onGone: panels.window.resume()
        sourceComponent: CorrectionPanel {
            offered: panels.shell.correctionReasons
            onGiven: (topicId, score, tags, text) => {
                panels.shell.correct(topicId, score, tags, text);
                correction.hide();
            }
            onRemoved: topicId => {
                panels.shell.uncorrect(topicId);
                correction.hide();
            }
        }
    }
}
