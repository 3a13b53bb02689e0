import QtQuick
import QtQuick.Templates as T
import Vorle
import Vorle.Models

// The chosen card enlarged into a comfortable page: all that is known of the topic.
ReadingPlace {
    id: page

    required property Shell shell
    required property TopicSelection selection
    required property topicCard topic
    readonly property string topicId: topic.topicId // "" when nothing is chosen
    required property string section // its name
    property var actions: [] // CardButton
    readonly property TopicPage details: shell.page
    readonly property bool shown: selection.enlarged

    signal act(int action)

    visible: opacity > 0
    opacity: shown ? 1 : 0
    enabled: shown
    Accessible.role: Accessible.Grouping
    Accessible.name: topic.title
    Accessible.description: topic.told
    Accessible.ignored: !shown

    Behavior on opacity {
        NumberAnimation {
            duration: Theme.quick
        }
    }
    onTopicIdChanged: {
        flick.contentY = 0;
        mark(null);
        seen.opened = false;
    }

    InSight {
        id: sight
        view: flick
        focused: page.shown ? page.Window.activeFocusItem : null
    }
    function takes(key: int): bool {
        return sight.takes(key);
    }
    property TextEdit marked: null

    function mark(text: TextEdit) {
        if (marked !== text) {
            marked?.deselect();
            marked = text;
        }
    }
    onShownChanged: mark(null)

    function copies(event: KeyEvent): bool {
        const some = shown && marked !== null && marked.selectedText.length > 0;
        if (some && event.matches(StandardKey.Copy)) { // qmllint disable unqualified
            marked.copy();
            return true;
        }
        return false;
    }
    Rectangle {
        anchors.fill: parent
        color: Theme.paper
    }
    HoverHandler {}
    WheelHandler {
        acceptedDevices: PointerDevice.Mouse
        onWheel: {}
    }

    ReadingHead {
        id: head
        width: parent.width
        section: page.section
        position: page.selection.currentRow
        count: page.selection.list.count
        title: flick.contentY > body.y + start.y + heading.y + heading.height ? page.topic.title : ""
        backKeys: page.shell.keyboard.keys(KeyboardMap.Previous)
        forthKeys: page.shell.keyboard.keys(KeyboardMap.Next)
        onClosed: page.selection.enlarged = false
        onMoved: step => page.selection.step(step)
    }
    Flickable {
        id: flick
        anchors.fill: parent
        anchors.topMargin: head.height
        anchors.bottomMargin: foot.height
        contentHeight: body.y + body.implicitHeight + Theme.margin
        boundsBehavior: Flickable.StopAtBounds
        clip: true
        T.ScrollBar.vertical: ScrollLine {}

        Column {
            id: body
            y: page.details.banner.length > 0 ? 0 : 12
            x: Math.max(Theme.margin, (flick.width - width) / 2)
            width: Math.min(Theme.readingWidth, flick.width - 2 * Theme.margin)
            spacing: 34
            visible: page.topicId !== ""

            Column {
                id: start
                width: parent.width
                spacing: 24

                // Its picture hangs over both sides of the text where there is room.
                Loader {
                    readonly property real hang: Math.min(20, body.x - 12)

                    x: -hang
                    width: parent.width + 2 * hang
                    // Where little is seen at a time, the text comes first.
                    height: Math.round(Math.min(width / 3, 0.4 * flick.height))
                    active: page.details.banner.length > 0 && height >= 120
                    visible: active
                    sourceComponent: SourcePicture {
                        file: page.details.banner
                        site: page.topic.site
                        radius: Theme.radiusCard
                    }
                }
                ReadingTitle {
                    id: heading
                    width: parent.width
                    topic: page.topic
                }
                SelectableText {
                    width: parent.width
                    visible: text.length > 0
                    words: page.topic.summary
                    font.pixelSize: Theme.textReading
                    leading: 1.3
                }
                WhyLine {
                    width: parent.width
                    selectable: true
                    text: page.topic.why
                }
                StepLine {
                    width: parent.width
                    selectable: true
                    text: page.topic.firstStep
                }
            }
            Chapter {
                width: parent.width
                name: qsTr("Ce qui change")
                visible: page.topic.changes.length > 0

                Column {
                    width: parent.width

                    Repeater {
                        model: page.topic.changes

                        ChangeRow {
                            required property int index
                            width: parent.width
                            first: index === 0
                        }
                    }
                }
            }
            Chapter {
                width: parent.width
                name: qsTr("Risques")
                visible: page.topic.risks.length > 0

                SelectableText {
                    width: parent.width
                    words: page.topic.risks
                    font.pixelSize: Theme.textMenu
                }
            }
            BriefView {
                width: parent.width
                topic: page.topic
                details: page.details
                onLinkOpened: url => page.shell.openLink(url)
            }
            Chapter {
                width: parent.width
                name: qsTr("Sources")
                visible: page.topic.sources.length > 0

                Repeater {
                    model: page.topic.sources

                    SourceRow {
                        required property namedLink modelData
                        width: parent.width
                        name: modelData.name
                        url: modelData.url
                        address: modelData.address
                        picture: modelData.picture
                        onClicked: page.shell.openLink(url)
                    }
                }
            }
            FoldLine {
                width: parent.width
                name: qsTr("D’où vient la note")
                gist: page.details.gradesText
                mark: page.details.scoreText
                visible: page.topicId !== "" && !page.topic.pendingCapture

                Repeater {
                    model: page.details.grades

                    CriterionBar {
                        required property namedGrade modelData
                        width: parent.width
                        name: modelData.name
                        grade: modelData.grade
                    }
                }
                Repeater {
                    model: page.details.facts

                    Item {
                        id: fact
                        required property namedText modelData
                        width: parent.width
                        implicitHeight: factText.implicitHeight

                        SelectableText {
                            width: Theme.grown(118)
                            words: fact.modelData.name
                            color: Theme.inkFaint
                        }
                        SelectableText {
                            id: factText
                            x: Theme.grown(118) + 8
                            width: parent.width - x
                            words: fact.modelData.text
                            color: Theme.inkSoft
                        }
                    }
                }
                ActionButton {
                    text: page.details.corrected ? qsTr("Revoir ma note") : qsTr("Corriger la note")
                    onClicked: page.act(KeyboardMap.Correct)
                }
            }
            Chapter {
                width: parent.width
                name: qsTr("Ta note")
                visible: page.topicId !== ""

                NoteEditor {
                    width: parent.width
                    topic: page.topic
                    onCursorRectangleChanged: {
                        if (activeFocus) {
                            sight.show(this, cursorRectangle.y, cursorRectangle.height);
                        }
                    }
                    onEdited: (topicId, text) => page.shell.decisions.setNote(topicId, text)
                }
            }
            Chapter {
                width: parent.width
                name: qsTr("Ce que j’ai lu")
                visible: page.details.seenText.length > 0

                SeenText {
                    id: seen
                    width: parent.width
                    text: page.details.seenText
                }
            }
        }
    }

    ReadingFoot {
        id: foot
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.bottom: parent.bottom
        actions: page.actions
        hint: page.shell.keyboard.openCardHint
        worth: page.topic.worth
        onAct: action => page.act(action)
    }
}
