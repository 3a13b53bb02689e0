import QtQuick
import Vorle
import Vorle.Models

// The topics of interest, each with how much it matters, changed in place.
Rows {
    id: rows

    required property TerritoryModel territory
    required property KeyboardMap keyboard

    function rename(asking: InterestRow, index: int, from: string, to: string) {
        change(asking, index, () => rows.territory.renameInterest(from, to));
    }
    function remove(name: string) {
        drop(() => rows.territory.removeInterest(name));
    }

    model: territory.interests
    Accessible.role: Accessible.List
    delegate: InterestRow {
        width: rows.width
        keyboard: rows.keyboard
        drafts: rows.drafts
        stop: activeFocus || index === rows.here
        onActiveFocusChanged: if (activeFocus) rows.here = index
        onIndexChanged: if (activeFocus) rows.here = index
        onStepped: by => rows.step(index, by)
        onWeighed: weight => rows.territory.setWeight(row.name, weight)
        onWritten: name => rows.rename(this, index, row.name, name)
        onRemoved: rows.remove(row.name)
    }
}
