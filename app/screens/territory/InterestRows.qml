import QtQuick
import Vorle
import Vorle.Models

// The topics of interest, each with how much it matters, changed in place.
Rows {
    id: rows

    required property TerritoryModel territory

    // By another name it is another row: the one that asked is gone then.
    function rename(asking: InterestRow, index: int, from: string, to: string) {
        if (to === from) {
            asking.stopEditing();
            return;
        }
        const refusal = territory.renameInterest(from, to);
        if (refusal.length > 0) {
            asking.problem = refusal;
        } else {
            take(index);
        }
    }
    function remove(index: int, name: string) {
        drop(index, () => rows.territory.removeInterest(name));
    }

    model: territory.interests
    Accessible.role: Accessible.List
    delegate: InterestRow {
        width: rows.width
        stop: activeFocus || index === rows.here
        onActiveFocusChanged: if (activeFocus) rows.here = index
        onIndexChanged: if (activeFocus) rows.here = index
        onStepped: by => rows.step(index, by)
        onWeighed: weight => rows.territory.setWeight(row.name, weight)
        onRenamed: name => rows.rename(this, index, row.name, name)
        onRemoved: rows.remove(index, row.name)
    }
}
