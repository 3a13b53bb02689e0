import QtQuick
import Vorle
import Vorle.Models

// The person's projects: those found on the machine, those pointed at or dropped.
OnboardingStep {
    id: step

    readonly property ProjectsModel projects: shell.territory.projects

    function takeFocus() {
        footAsked(); // ↩ goes on, as it says
    }

    function settled(): bool {
        return cards.settled();
    }
    function describe(asking: ProjectCard, index: int, name: string, description: string) {
        cards.change(asking, index, () => step.projects.describe(name, description));
    }
    function remove(name: string) {
        cards.drop(() => step.projects.remove(name));
    }

    Rows {
        id: cards
        width: parent.width
        spacing: 10
        visible: count > 0
        model: step.projects.rows
        Accessible.role: Accessible.List
        Accessible.name: qsTr("Tes projets")
        onEmptied: choose.forceActiveFocus(Qt.TabFocusReason)
        delegate: ProjectCard {
            width: cards.width
            height: 140
            drafts: cards.drafts
            stop: activeFocus || index === cards.here
            onActiveFocusChanged: if (activeFocus) cards.here = index
            onIndexChanged: if (activeFocus) cards.here = index
            onStepped: by => cards.step(index, by)
            onWritten: description => step.describe(this, index, row.name, description)
            onFolderAsked: step.projects.chooseFolderFor(row.name)
            onRemoved: step.remove(row.name)
        }
    }
    OrphanLine {
        list: cards
    }
    Label {
        width: parent.width
        topPadding: 6
        visible: found.count > 0
        text: qsTr("Trouvés sur ta machine")
        color: Theme.inkSoft
        font.pixelSize: Theme.textNote
    }
    Rows {
        id: found
        width: parent.width
        model: step.model.found
        onEmptied: choose.forceActiveFocus(Qt.TabFocusReason)
        delegate: FoundProject {
            required property foundFolder row
            width: found.width
            folder: row
            onAdded: step.projects.addFolders([row.url])
        }
    }
    Rectangle {
        width: parent.width
        height: 96
        radius: Theme.radiusCard
        color: drop.containsDrag ? Theme.raised : "transparent"
        border.width: drop.containsDrag ? 2 : 1
        border.color: drop.containsDrag ? Theme.accent : Theme.edge

        Column {
            anchors.centerIn: parent
            spacing: 8

            Label {
                anchors.horizontalCenter: parent.horizontalCenter
                text: qsTr("Glisse un dossier ici")
                font.weight: Font.DemiBold
            }
            ActionButton {
                id: choose
                anchors.horizontalCenter: parent.horizontalCenter
                implicitHeight: 32
                text: qsTr("Choisir un dossier…")
                onClicked: step.projects.chooseFolder()
            }
        }
        DropArea {
            id: drop
            anchors.fill: parent
            keys: ["text/uri-list"]
            onDropped: event => {
                step.projects.addFolders(event.urls);
                event.acceptProposedAction();
            }
        }
    }
    Label {
        width: parent.width
        visible: text.length > 0
        text: step.projects.problem
        color: Theme.tintInk
        font.pixelSize: Theme.textNote
        Accessible.role: Accessible.AlertMessage
    }
}
