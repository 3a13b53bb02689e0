import QtQuick
import Vorle
import Vorle.Models

// What the decisions taught, by group, each with its figures and its switch.
PageSection {
    id: section

    required property ReflexesModel model

    signal decisionsAsked(reflexRow reflex)
    signal startAgainAsked

    name: qsTr("Réflexes")
    gap: 0
    corner: ActionButton {
        id: again
        quiet: true
        implicitHeight: 32
        font.pixelSize: Theme.textNote
        rightPadding: 0
        text: qsTr("Repartir de zéro…")
        usable: section.model.startAgainText.length > 0
        onClicked: section.startAgainAsked()
    }

    function takeFocus() {
        if (rows.count > 0) {
            rows.take(rows.here);
        } else if (again.usable) {
            again.forceActiveFocus(Qt.TabFocusReason);
        }
    }

    Label {
        width: Math.min(parent.width, 680)
        topPadding: 4
        bottomPadding: 4
        visible: text.length > 0
        text: section.model.stateText
        color: Theme.inkSoft
    }
    Rows {
        id: rows
        width: parent.width
        model: section.model.rows
        Accessible.role: Accessible.List
        Accessible.name: section.name
        delegate: TerritoryReflex {
            width: rows.width
            stop: activeFocus || index === rows.here
            onActiveFocusChanged: if (activeFocus) rows.here = index
            onIndexChanged: if (activeFocus) rows.here = index
            onStepped: by => rows.step(index, by)
            onSwitched: on => section.model.setOn(row.id, on)
            onOpened: section.decisionsAsked(row)
        }
    }
    Label {
        width: parent.width
        topPadding: 16
        visible: text.length > 0
        text: section.model.footText
        color: Theme.inkFaint
        font.pixelSize: Theme.textNote
    }
}
