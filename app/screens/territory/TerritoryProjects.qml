import QtQuick
import Vorle
import Vorle.Models

// The watched projects, and the job that they and the apps point to.
PageSection {
    id: section

    required property TerritoryModel model
    readonly property int columns: width >= 720 ? 3 : width >= 440 ? 2 : 1
    readonly property real cell: (width - 12 * (columns - 1)) / columns
    readonly property bool narrow: width < 620

    name: qsTr("Projets")
    gap: 10

    function takeFocus() {
        if (cards.count > 0) {
            cards.take(cards.here);
        } else {
            choose.forceActiveFocus(Qt.TabFocusReason);
        }
    }

    function describe(asking: ProjectCard, index: int, name: string, description: string) {
        cards.change(asking, index, () => section.model.projects.describe(name, description));
    }
    function remove(name: string) {
        cards.drop(() => section.model.projects.remove(name));
    }

    // The cards and, after the last, the place where a folder is dropped.
    Item {
        width: parent.width
        implicitHeight: Math.ceil((cards.count + 1) / section.columns) * 172 - 12

        Rows {
            id: cards
            width: parent.width
            spacing: 12
            model: section.model.projects.rows
            Accessible.role: Accessible.List
            Accessible.name: section.name
            onEmptied: choose.forceActiveFocus(Qt.TabFocusReason)
            delegate: ProjectCard {
                width: section.cell
                height: 160
                drafts: cards.drafts
                stop: activeFocus || index === cards.here
                onActiveFocusChanged: if (activeFocus) cards.here = index
                onIndexChanged: if (activeFocus) cards.here = index
                onStepped: by => cards.step(index, by)
                onWritten: description => section.describe(this, index, row.name, description)
                onFolderAsked: section.model.projects.chooseFolderFor(row.name)
                onRemoved: section.remove(row.name)
            }
        }
        Rectangle {
            x: (cards.count % section.columns) * (section.cell + 12)
            y: Math.floor(cards.count / section.columns) * 172
            width: section.cell
            height: 160
            radius: Theme.radiusCard
            color: drop.containsDrag ? Theme.raised : "transparent"
            border.width: drop.containsDrag ? 2 : 1
            border.color: drop.containsDrag ? Theme.accent : Theme.edge

            Column {
                anchors.centerIn: parent
                width: parent.width - 24
                spacing: 4

                Label {
                    width: parent.width
                    horizontalAlignment: Text.AlignHCenter
                    text: qsTr("Glisse un dossier ici")
                    font.weight: Font.DemiBold
                }
                Label {
                    width: parent.width
                    horizontalAlignment: Text.AlignHCenter
                    bottomPadding: 12
                    text: qsTr("un projet de code, ou autre chose")
                    color: Theme.inkFaint
                    font.pixelSize: Theme.textNote
                }
                ActionButton {
                    id: choose
                    anchors.horizontalCenter: parent.horizontalCenter
                    implicitHeight: 32
                    text: qsTr("Choisir un dossier…")
                    onClicked: section.model.projects.chooseFolder()
                }
            }
        }
        DropArea {
            id: drop
            anchors.fill: parent
            keys: ["text/uri-list"]
            onDropped: event => {
                section.model.projects.addFolders(event.urls);
                event.acceptProposedAction();
            }
        }
    }
    OrphanLine {
        list: cards
    }
    Label {
        width: parent.width
        topPadding: 8
        visible: text.length > 0
        text: section.model.projects.problem
        color: Theme.tintInk
        font.pixelSize: Theme.textNote
        Accessible.role: Accessible.AlertMessage
    }
    Flow {
        width: parent.width
        topPadding: 14
        spacing: 14

        Label {
            height: 36
            verticalAlignment: Text.AlignVCenter
            text: qsTr("Ton métier")
            color: Theme.inkSoft
            font.pixelSize: Theme.textNote
            font.weight: Font.Medium
            Accessible.ignored: true
        }
        TextEntry {
            id: job

            property string problem: ""

            // What is typed stays until it is taken or given up, whatever a command writes meanwhile.
            function show() {
                if (!activeFocus && problem.length === 0) {
                    text = section.model.job;
                }
            }
            function leave() {
                problem = text === section.model.job ? "" : section.model.setJob(text);
                show();
            }

            width: section.narrow ? section.width : 262
            implicitHeight: 36
            font.pixelSize: Theme.textBody
            placeholderText: qsTr("Ce que tu fais, en deux mots")
            Accessible.name: qsTr("Ton métier")
            Component.onCompleted: show()
            onAccepted: leave()
            onActiveFocusChanged: if (!activeFocus) leave()
            Keys.onEscapePressed: {
                text = section.model.job;
                problem = "";
            }

            Connections {
                target: section.model

                function onChanged() {
                    job.show();
                }
            }
        }
        ActionButton {
            visible: section.model.jobProposal.length > 0
            quiet: true
            implicitHeight: 36
            leftPadding: 0
            font.pixelSize: Theme.textNote
            font.weight: Font.Normal
            text: qsTr("proposé d’après tes projets et tes apps : %1").arg(section.model.jobProposal)
            onClicked: {
                const had = activeFocus; // it goes once it is taken
                section.model.setJob(section.model.jobProposal);
                job.text = section.model.job;
                if (had) {
                    job.forceActiveFocus(Qt.TabFocusReason);
                }
            }
        }
    }
    Label {
        width: parent.width
        visible: text.length > 0
        text: job.problem
        color: Theme.tintInk
        font.pixelSize: Theme.textNote
        Accessible.role: Accessible.AlertMessage
    }
}
