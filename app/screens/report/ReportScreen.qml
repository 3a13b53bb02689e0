import QtQuick
import Vorle
import Vorle.Models

// "Bilan": the figures of a week, a month or a year, then the runs' reports, newest first.
ListScreen {
    id: screen

    readonly property ReportModel model: shell.report
    readonly property FiguresModel figures: shell.figures

    subtitle: figures.isEmpty ? "" : figures.subtitle
    list.model: model
    list.currentIndex: -1 // the keyboard rests on no report
    onCurrentChanged: look()
    Component.onCompleted: look()

    function look() {
        figures.active = current;
        if (current) {
            model.refresh();
        }
    }

    corner: PeriodChoice {
        visible: !screen.figures.isEmpty
        figures: screen.figures
    }
    EmptyState {
        anchors.fill: parent
        visible: screen.figures.isEmpty
        title: qsTr("Pas encore de fouille.")
        text: qsTr("Chaque fouille laisse ici son compte rendu : ce que j’ai trouvé, lu, jugé, et ce qui n’a rien donné.")
    }
    list.visible: !figures.isEmpty
    list.header: ReportHead {
        width: screen.contentWidth
        figures: screen.figures
        reported: screen.model.count > 0
        title: screen.title
    }
    list.delegate: ReportRow {
        required property int index
        width: screen.contentWidth
        onToggled: screen.model.toggle(index)
        // What it has to tell is seen.
        onOpenChanged: if (open) Qt.callLater(() => screen.list.positionViewAtIndex(index, ListView.Contain)) // qmllint disable
    }
}
