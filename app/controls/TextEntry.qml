import QtQuick
import QtQuick.Templates as T
import Vorle

// A line of text the person writes.
T.TextField {
    id: entry

    // What who listens is told beside the name.
    property string hint: Accessible.name === placeholderText ? "" : placeholderText

    implicitHeight: Theme.grown(42)
    leftPadding: 16
    rightPadding: 16
    verticalAlignment: TextInput.AlignVCenter
    color: Theme.ink
    placeholderTextColor: Theme.inkFaint
    selectionColor: Theme.accent
    selectedTextColor: Theme.accentInk
    font.family: Theme.textFamily
    font.pixelSize: Theme.textLarge
    selectByMouse: true
    Accessible.role: Accessible.EditableText
    Accessible.name: placeholderText
    // Qt gives the placeholder once more, whatever was written here.
    Accessible.onDescriptionChanged: if (Accessible.description !== hint) Accessible.description = hint

    background: Rectangle {
        radius: Theme.radiusButton
        color: Theme.sunken
        border.width: entry.activeFocus ? 2 : 1
        border.color: entry.activeFocus ? Theme.accent : Theme.line
    }

    Text {
        x: entry.leftPadding
        width: entry.width - 2 * x
        anchors.verticalCenter: parent.verticalCenter
        visible: entry.text.length === 0 && entry.preeditText.length === 0
        text: entry.placeholderText
        color: Theme.inkFaint
        font: entry.font
        elide: Text.ElideRight
        Accessible.ignored: true
    }
}
