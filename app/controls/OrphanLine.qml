import QtQuick
import Vorle

// Under a list: what was being written in a row that is gone.
Label {
    required property Rows list

    width: parent?.width ?? 0
    topPadding: 8
    visible: text.length > 0
    text: list.orphan
    color: Theme.tintInk
    font.pixelSize: Theme.textNote
    Accessible.role: Accessible.AlertMessage
}
