import QtQuick
import Vorle
import Vorle.Models

// A page of the settings: its name, and those of its rows that are shown.
Column {
    id: page

    required property SettingsPages pages
    required property string name // as SettingsPages calls it
    property bool headed: true

    function isShown(names: list<string>): bool {
        for (let i = 0; i < names.length; ++i) {
            if (names[i] === name) {
                return true;
            }
        }
        return false;
    }

    visible: isShown(pages.shownPages)
    width: parent?.width ?? 0

    Title {
        width: parent.width
        visible: page.headed
        text: page.name
        size: Theme.titleCard
        bottomPadding: 10
        topPadding: page.y > 0 ? 22 : 0
    }
}
