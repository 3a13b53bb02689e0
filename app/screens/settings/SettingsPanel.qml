import QtQuick
import QtQuick.Templates as T
import Vorle
import Vorle.Models

// ⌘,: all settings on a few pages, each acting at once. ↑ and ↓ go from row to row, typing or ⌘F
// searches.
Panel {
    id: panel

    required property Shell shell
    readonly property SettingsPages pages: shell.screens.settingsPages
    readonly property bool narrow: width < 720
    readonly property bool headed: !narrow || pages.searching // else the page is named right above

    signal territoryAsked
    signal reportAsked
    signal benchAsked
    signal feedbackAsked
    signal updateAsked
    signal onboardingAsked
    signal calibrationAsked

    name: qsTr("Réglages")
    sheetWidth: 840
    sheetHeight: Math.min(600, height - 40)
    padding: 0
    onShownChanged: {
        if (shown) {
            pages.query = "";
            pages.refresh();
            shell.agentStates.refresh(); // one may have been installed meanwhile
            shell.screens.desktop.refresh();
            shell.screens.captureShortcut.look();
            flick.contentY = 0;
            menu.takeFocus();
        }
    }

    // Row by row; from the first one back to the pages.
    function walk(by: int) {
        const all = [];
        for (let i = 0; i < body.children.length; ++i) {
            const page = body.children[i] as SettingsPage;
            for (let j = 0; page !== null && page.visible && j < page.children.length; ++j) {
                const row = page.children[j] as SettingRow;
                if (row?.stop()) {
                    all.push(row);
                }
            }
        }
        let at = Window.activeFocusItem;
        while (at !== null && !(at instanceof SettingRow)) {
            at = at.parent;
        }
        const next = all.indexOf(at) + by;
        if (next >= 0 && next < all.length) {
            (all[next] as SettingRow).takeFocus();
        } else if (next < 0) {
            narrow || pages.searching ? search.forceActiveFocus() : menu.takeFocus();
        }
    }

    Keys.priority: Keys.BeforeItem
    Keys.onPressed: event => {
        const typing = Window.activeFocusItem instanceof TextInput;
        const find = event.key === Qt.Key_F && event.modifiers === Qt.ControlModifier;
        const printable = event.text.length === 1 && event.text > " " && !(event.modifiers & (Qt.ControlModifier | Qt.AltModifier | Qt.MetaModifier)) && event.text !== "+" && event.text !== "-";
        if (find || (printable && !typing)) {
            search.forceActiveFocus(Qt.ShortcutFocusReason);
            if (!find) {
                search.insert(search.length, event.text);
            }
            event.accepted = true;
        }
    }
    Keys.onUpPressed: walk(-1)
    Keys.onDownPressed: walk(1)

    Rectangle {
        id: side
        width: panel.narrow ? 0 : Theme.grown(196)
        height: parent.height
        visible: !panel.narrow
        radius: Theme.radiusCard
        color: Theme.side

        Rectangle { // straight where it meets the page
            anchors.right: parent.right
            width: Theme.radiusCard
            height: parent.height
            color: Theme.side
        }
        Rectangle {
            anchors.right: parent.right
            width: 1
            height: parent.height
            color: Theme.line
        }
        Title {
            x: 27
            y: 24
            text: panel.name
            size: Theme.titleCard
        }
        Label {
            x: 27
            anchors.bottom: parent.bottom
            anchors.bottomMargin: 18
            text: panel.pages.versionText
            color: Theme.inkSoft
            font.pixelSize: Theme.textSmall
        }
    }
    Item {
        id: head
        x: side.width + 28
        width: parent.width - x - 28
        height: search.y + search.height + 12

        TextEntry {
            id: search
            y: 18
            width: parent.width - leave.width - 14
            implicitHeight: Math.max(38, Theme.textBody + 24)
            leftPadding: 14
            font.pixelSize: Theme.textBody
            placeholderText: qsTr("Rechercher un réglage")
            onTextEdited: panel.pages.query = text
            onTextChanged: panel.pages.query = text
            Keys.onEscapePressed: event => {
                event.accepted = text.length > 0;
                text = "";
            }
            Keys.onReturnPressed: panel.walk(1)
            Keys.onEnterPressed: panel.walk(1)

            Connections {
                target: panel.pages

                function onShownChanged() {
                    if (search.text !== panel.pages.query) {
                        search.text = panel.pages.query;
                    }
                    flick.contentY = 0;
                }
            }
        }
        KeyCap {
            id: leave
            anchors.right: parent.right
            anchors.verticalCenter: search.verticalCenter
            keys: qsTr("Échap")
        }
    }
    SettingsMenu {
        id: menu
        parent: panel.narrow ? head : side
        x: panel.narrow ? 0 : 13
        y: panel.narrow ? head.height : 61
        width: panel.narrow ? head.width : side.width - 27
        level: panel.narrow
        pages: panel.pages
        onEntered: panel.walk(1)
    }
    InSight {
        id: sight
        view: flick
        focused: panel.shown ? panel.Window.activeFocusItem : null
    }
    Flickable {
        id: flick
        anchors.left: head.left
        anchors.right: head.right
        anchors.rightMargin: -14
        anchors.top: head.bottom
        anchors.topMargin: panel.narrow ? menu.implicitHeight + 8 : 0
        anchors.bottom: problem.top
        contentHeight: body.implicitHeight + 24
        boundsBehavior: Flickable.StopAtBounds
        clip: true
        T.ScrollBar.vertical: ScrollLine {}

        Column {
            id: body
            x: 4
            width: flick.width - 18

            SettingsGeneral {
                onFeedbackAsked: panel.feedbackAsked()
                onUpdateAsked: panel.updateAsked()
                shell: panel.shell
                headed: panel.headed
                pages: panel.pages
            }
            SettingsRuns {
                shell: panel.shell
                headed: panel.headed
                pages: panel.pages
                onTerritoryAsked: panel.territoryAsked()
                onReportAsked: panel.reportAsked()
            }
            SettingsAgent {
                shell: panel.shell
                headed: panel.headed
                pages: panel.pages
                onBenchAsked: panel.benchAsked()
            }
            SettingsCapture {
                shell: panel.shell
                headed: panel.headed
                pages: panel.pages
            }
            SettingsNotices {
                shell: panel.shell
                headed: panel.headed
                pages: panel.pages
            }
            SettingsData {
                onOnboardingAsked: panel.onboardingAsked()
                onCalibrationAsked: panel.calibrationAsked()
                shell: panel.shell
                headed: panel.headed
                pages: panel.pages
            }
            Label {
                width: parent.width
                visible: panel.pages.searching && panel.pages.shown.length === 0
                topPadding: 24
                horizontalAlignment: Text.AlignHCenter
                text: qsTr("Aucun réglage ne porte ces mots.")
                color: Theme.inkSoft
            }
        }
    }
    // A value that did not fit, or a disk that did not take one.
    Label {
        id: problem
        anchors.left: head.left
        anchors.right: head.right
        anchors.bottom: parent.bottom
        height: visible ? implicitHeight : 0
        topPadding: 8
        bottomPadding: 14
        visible: text.length > 0
        text: panel.shell.settings.problem
        color: Theme.tintInk
        font.pixelSize: Theme.textNote
        Accessible.role: Accessible.AlertMessage
    }
}
