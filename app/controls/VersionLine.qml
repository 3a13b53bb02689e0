import QtQuick
import Vorle

// From which version to which.
Label {
    visible: text.length > 0
    color: Theme.inkSoft
    font.weight: Font.DemiBold
    lineHeight: 1.15
    wrapMode: Text.NoWrap
    elide: Text.ElideRight
}
