import QtQuick
import Vorle.Models
import Vorle

// A section of topics in its window.
TopicSection {
    id: screen

    required property var window // Main
    required property int bannerHeight // the height it leaves free at the top
    required property int number

    anchors.fill: parent
    anchors.topMargin: bannerHeight
    focus: true
    title: screen.visible ? screen.window.sections.title : ""
    subtitle: screen.visible ? screen.window.sections.subtitle : ""
    emptyTitle: screen.visible ? screen.window.sections.emptyTitle : ""
    emptyText: screen.visible ? screen.window.sections.emptyText : ""
    emptyActions: screen.visible ? screen.window.sections.emptyActions : []
    details: screen.window.shell.page
    ghost: screen.window.ghost !== null && screen.window.ghost.section === screen.number ? screen.window.ghost : null
    openHint: screen.window.keyboard.openCardHint
    undoKeys: screen.window.keyboard.keys(KeyboardMap.Undo)
    searchKeys: screen.window.keyboard.keys(KeyboardMap.Search)
    backKeys: screen.window.keyboard.keys(KeyboardMap.PreviousTopic)
    forthKeys: screen.window.keyboard.keys(KeyboardMap.NextTopic)
    onAct: action => screen.window.perform(action)
    onEmptyAct: action => screen.window.perform(action)
    onUndoAsked: screen.window.perform(KeyboardMap.Undo)
    onSearchAsked: screen.window.perform(KeyboardMap.Search)
    onLinkOpened: url => screen.window.shell.openLink(url)
    onNoteEdited: (topicId, text) => screen.window.shell.decisions.setNote(topicId, text)
    onCorrectionAsked: topicId => screen.window.askCorrection(topicId)
}
