import QtQuick
import Vorle
import Vorle.Models

// The topics of interest, each with how much it matters.
PageSection {
    id: section

    required property TerritoryModel model

    name: qsTr("Domaines")
    gap: 4
    corner: Label {
        text: "<b>" + section.model.interests.count + "</b>" + section.model.counterText
        textFormat: Text.StyledText
        color: section.model.diluted ? Theme.tintInk : Theme.inkFaint
        font.pixelSize: Theme.textNote
        wrapMode: Text.NoWrap
        Accessible.name: section.model.interests.count + section.model.counterText
    }

    function takeFocus() {
        if (rows.count > 0) {
            rows.take(rows.here);
        } else {
            adder.takeFocus();
        }
    }

    // By another name it is another row: the one that asked is gone then.
    function rename(asking: InterestRow, index: int, from: string, to: string) {
        if (to === from) {
            asking.stopEditing();
            return;
        }
        const refusal = model.renameInterest(from, to);
        if (refusal.length > 0) {
            asking.problem = refusal;
        } else {
            rows.take(index);
        }
    }
    function remove(index: int, name: string) {
        rows.drop(index, () => section.model.removeInterest(name));
    }

    Rows {
        id: rows
        width: parent.width
        model: section.model.interests
        Accessible.role: Accessible.List
        Accessible.name: section.name
        onEmptied: adder.takeFocus()
        onSteppedOut: by => {
            if (by > 0) {
                adder.takeFocus();
            }
        }
        delegate: InterestRow {
            width: rows.width
            stop: activeFocus || index === rows.here
            onActiveFocusChanged: if (activeFocus) rows.here = index
            onIndexChanged: if (activeFocus) rows.here = index
            onStepped: by => rows.step(index, by)
            onWeighed: weight => section.model.setWeight(row.name, weight)
            onRenamed: name => section.rename(this, index, row.name, name)
            onRemoved: section.remove(index, row.name)
        }
    }
    Rectangle {
        width: parent.width
        height: 1
        color: Theme.line
        visible: rows.count > 0
    }
    Item {
        width: 1
        height: 10
    }
    AddField {
        id: adder
        width: parent.width
        prompt: qsTr("Ajouter un domaine")
        onAdded: text => settle(section.model.addInterest(text))
    }
}
