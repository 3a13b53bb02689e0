import QtQuick
import Vorle

// Where a section's reading page lies over its list. Made when it is first asked for: most starts
// never need it.
Loader {
    id: place

    required property var section // TopicSection
    required property int position // of the topic shown, among the section's
    readonly property ReadingPage page: item as ReadingPage

    active: section.enlarged || item !== null
    sourceComponent: ReadingPage {
        shown: place.section.enlarged
        topic: shown ? place.section.current : null
        details: place.section.details
        actions: place.section.actionsOf(topic?.refusal ?? "", topic?.captureProblem ?? "")
        hint: place.section.openHint
        section: place.section.title
        position: place.position
        count: place.section.model.count
        backKeys: place.section.backKeys
        forthKeys: place.section.forthKeys
        onMoved: step => place.section.nextTopic(step)
        onAct: action => place.section.act(action)
        onClosed: place.section.enlarged = false
        onLinkOpened: url => place.section.linkOpened(url)
        onNoteEdited: (topicId, text) => place.section.noteEdited(topicId, text)
        onCorrectionAsked: topicId => place.section.correctionAsked(topicId)
    }
}
