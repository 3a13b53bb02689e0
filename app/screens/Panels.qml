import QtQuick
import Vorle.Models
import Vorle

// What lies over the window, one at a time.
Item {
    id: panels

    required property var window // Main

    readonly property var shell: window.shell
    readonly property var all: [search, shortcuts, addLink, correction, settings]
    readonly property bool shown: search.shown || shortcuts.shown || addLink.shown || correction.shown || settings.shown
    readonly property Panel searchPanel: search
    readonly property Panel shortcutsPanel: shortcuts
    readonly property Panel settingsPanel: settings
    readonly property Panel addPanel: addLink

    // Two would fight for the keyboard.
    function open(panel: var) {
        for (const other of all) {
            other.shown = other === panel;
        }
    }
    function close() {
        open(null);
    }
    // Asked of the panels themselves: a binding on them may not have been told yet.
    function anyShown(): bool {
        return all.some(panel => panel.shown);
    }
    function add() {
        addLink.suggestion = shell.linkOnPasteboard();
        open(addLink);
    }
    function correct(topics: var, topicId: string) {
        const row = topics.rowOf(topicId);
        const former = topics.value(row, TopicListModel.FormerScore);
        const now = topics.value(row, TopicListModel.Score);
        open(correction);
        correction.open(topicId, topics.value(row, TopicListModel.Title), former >= 0 ? former : now, now, shell.correctionTags(topicId), shell.correctionText(topicId), former >= 0);
    }

    SearchOverlay {
        id: search
        search: panels.shell.search
        onClosed: shown = false
        onShownChanged: if (!shown) panels.window.resume()
        onPicked: (section, topicId) => panels.window.showTopic(section, topicId)
    }
    ShortcutSheet {
        id: shortcuts
        groups: panels.window.keyboard.groups
        onClosed: shown = false
        onShownChanged: if (!shown) panels.window.resume()
    }
    SettingsPanel {
        id: settings
        shell: panels.shell
        onClosed: shown = false
        onShownChanged: if (!shown) panels.window.resume()
    }
    AddLink {
        id: addLink
        onClosed: shown = false
        onShownChanged: {
            if (!shown) {
                panels.window.resume();
            }
        }
        onAdded: (url, note) => {
            problem = panels.shell.addLink(url, note);
            if (problem.length === 0) {
                shown = false;
                panels.window.go(Section.Inbox);
            }
        }
    }
    CorrectionPanel {
        id: correction
        offered: panels.shell.correctionWords
        onClosed: shown = false
        onShownChanged: if (!shown) panels.window.resume()
        onGiven: (topicId, score, tags, text) => {
            panels.shell.correct(topicId, score, tags, text);
            shown = false;
        }
        onRemoved: topicId => {
            panels.shell.uncorrect(topicId);
            shown = false;
        }
    }
}
