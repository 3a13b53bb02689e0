import QtQuick
import QtQuick.Templates as T
import Vorle
import Vorle.Models

// "Ton territoire": what a run searches for, edited in place, on one page with a bar that follows it.
SectionScreen {
    id: screen

    readonly property TerritoryModel model: shell.territory
    readonly property real margin: width < 600 ? 20 : Theme.margin
    readonly property real column: Math.min(Theme.columnWidth, width - 2 * margin)
    readonly property real edge: (width - column) / 2
    // Where the bar leads, and what it is called.
    readonly property list<PageSection> stops: [projects, interests, tools, sites, radius, reflexes]
    property int at: 0


    onCurrentChanged: model.active = current
    Component.onCompleted: model.active = current
    Keys.onPressed: event => event.accepted = !(event.modifiers & ~Qt.KeypadModifier) && sight.takes(event.key)

    function move(step: int) {
        sight.scrollBy(step * 80);
    }
    function focusContent() {
        page.forceActiveFocus();
    }
    function undo(): bool {
        const back = model.redoneText;
        if (!model.undo()) {
            return false;
        }
        undoLine.hide();
        told(back);
        return true;
    }
    function follow() {
        const end = page.contentY >= page.contentHeight - page.height - 1 && page.contentY > 0;
        let now = 0;
        for (let i = 0; i < stops.length; ++i) {
            if (stops[i].y <= page.contentY + 80) {
                now = i;
            }
        }
        if (page.contentY !== jumpedTo) {
            jumpedTo = -1;
            at = end ? stops.length - 1 : now;
        }
    }
    // Where somebody jumped is what the bar shows until they scroll, even where the page ends first.
    property real jumpedTo: -1
    function jump(index: int) {
        sight.scrollTo(index === 0 ? 0 : stops[index].y - 10);
        jumpedTo = page.contentY;
        at = index;
    }

    Connections {
        target: screen.model

        function onUndoChanged() {
            if (screen.model.undoText.length > 0 && screen.model.undoCount > undoLine.count) {
                undoLine.show();
                screen.told(screen.model.undoText);
            }
            undoLine.count = screen.model.undoCount;
        }
    }
    InSight {
        id: sight
        view: page
        focused: screen.current ? screen.Window.activeFocusItem : null
    }
    SectionHead {
        id: head
        x: screen.edge
        width: screen.column
        title: screen.title
        subtitle: screen.model.summary
        searchKeys: screen.shell.keyboard.keys(KeyboardMap.Search)
        onSearchAsked: screen.act(KeyboardMap.Search)
        below: Flow {
            width: parent.width
            spacing: 8

            Segments {
                id: bar
                name: qsTr("Aller à")
                labels: [qsTr("Projets"), qsTr("Domaines"), qsTr("Outils"), qsTr("Sites"), qsTr("Rayon"), qsTr("Réflexes")]
                chosen: screen.at
                tight: screen.column < 520
                onPicked: index => screen.jump(index)
                onEntered: index => screen.stops[index].takeFocus()
            }
            Item {
                width: Math.max(0, parent.width - bar.implicitWidth - send.implicitWidth - 16)
                height: 1
                visible: width > 0
            }
            ActionButton {
                id: send
                quiet: true
                rightPadding: 0
                implicitHeight: 36
                font.pixelSize: Theme.textNote
                text: (bar.tight ? qsTr("Envoi  %1  ›") : qsTr("Ce qu’une fouille envoie  %1  ›")).arg(screen.model.preview.size)
                Accessible.name: screen.model.preview.size.length > 0 ? qsTr("Ce qu’une fouille envoie, %1").arg(screen.model.preview.size) : qsTr("Ce qu’une fouille envoie")
                onClicked: screen.panelAsked(PanelHost.Send)
            }
        }
    }
    Rectangle {
        anchors.top: page.top
        width: parent.width
        height: 1
        color: Theme.line
        visible: page.contentY > 0
    }
    Flickable {
        id: page
        anchors.top: head.bottom
        anchors.topMargin: 10
        anchors.bottom: parent.bottom
        width: parent.width
        contentHeight: sections.implicitHeight + Theme.margin + 40
        clip: true
        focus: true
        boundsBehavior: Flickable.StopAtBounds
        Accessible.role: Accessible.Grouping
        Accessible.name: screen.model.summary
        T.ScrollBar.vertical: ScrollLine {}
        onContentYChanged: screen.follow()
        // Into the page: the chain of all items would go round by the menu.
        Keys.onTabPressed: event => {
            const here = Window.activeFocusItem === page;
            if (here) {
                screen.stops[screen.at].takeFocus();
            }
            event.accepted = here && Window.activeFocusItem !== page; // there may be nothing to go to
        }

        Column {
            id: sections
            x: screen.edge
            y: 8
            width: screen.column
            spacing: 30

            TerritoryProjects {
                id: projects
                width: parent.width
                model: screen.model
            }
            TerritoryInterests {
                id: interests
                width: parent.width
                keyboard: screen.shell.keyboard
                drafts: screen.shell.drafts
                model: screen.model
            }
            TerritoryNames {
                id: tools
                width: parent.width
                name: qsTr("Outils")
                list: screen.model.tools
                adding: qsTr("+ Ajouter un outil")
                prompt: qsTr("Le nom d’un outil")
                drafts: screen.shell.drafts
                draft: "tool"
                proposed: screen.model.apps.proposedTools
                onAdded: name => problem = screen.model.addTool(name)
                onRemoved: name => screen.model.removeTool(name)
            }
            TerritoryNames {
                id: apps
                width: parent.width
                name: Theme.mac ? qsTr("Apps de ton Mac") : qsTr("Apps de ta machine")
                list: screen.model.apps.rows
                tiles: true
                adding: screen.model.apps.chooseText
                writes: false
                help: qsTr("Elles disent comment tu travailles. Je ne les cherche pas pour elles-mêmes.")
                onAsked: screen.panelAsked(PanelHost.Apps)
                onRemoved: name => screen.model.apps.remove(name)
                corner: Segments {
                    name: qsTr("Apps que je peux nommer")
                    labels: [qsTr("Seulement celles-ci"), qsTr("Toutes, sauf celles-ci")]
                    chosen: screen.model.apps.only ? 0 : 1
                    tight: screen.column < 560
                    onPicked: index => screen.model.apps.only = index === 0
                }
            }
            TerritorySites {
                id: sites
                width: parent.width
                drafts: screen.shell.drafts
                model: screen.model.sites
            }
            TerritoryNames {
                id: exclusions
                width: parent.width
                name: qsTr("À ne jamais ramener")
                list: screen.model.exclusions
                adding: qsTr("+ Ajouter un site ou un dossier")
                prompt: qsTr("Un site, un dossier")
                drafts: screen.shell.drafts
                draft: "exclusion"
                onAdded: name => problem = screen.model.addExclusion(name)
                onRemoved: name => screen.model.removeExclusion(name)
            }
            PageSection {
                id: radius
                width: parent.width
                name: qsTr("Rayon")
                onFocusAsked: choice.takeFocus()

                RadiusChoice {
                    id: choice
                    width: parent.width
                    labels: screen.model.radiusLabels
                    texts: screen.model.radiusTexts
                    chosen: screen.model.radius
                    onPicked: level => screen.model.radius = level
                }
            }
            TerritoryReflexes {
                id: reflexes
                width: parent.width
                model: screen.model.reflexes
                onDecisionsAsked: reflex => screen.decisionsAsked(reflex)
                onStartAgainAsked: screen.panelAsked(PanelHost.StartAgain)
            }
        }
    }
    UndoLine {
        id: undoLine

        property int count: 0

        anchors.horizontalCenter: parent.horizontalCenter
        anchors.bottom: parent.bottom
        anchors.bottomMargin: 20
        text: screen.model.undoText
        keys: screen.shell.keyboard.keys(KeyboardMap.Undo)
        onUndo: screen.undo()
    }
}
