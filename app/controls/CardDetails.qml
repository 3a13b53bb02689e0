import QtQuick
import Vorle
import Vorle.Models

// What the chosen card adds: its picture, the gist, why it matters to this person, the first step,
// the keys.
Item {
    id: details

    required property topicCard topic
    property var actions: [] // CardButton
    property bool showActions: true
    property bool tight: false // for a low window
    property bool tiny: false // for the lowest: what the page says is left to it
    property real before: 0 // the room at its left, under the score
    property bool pictured: false // beside its head there is room for a picture
    property real above: 0 // how high that head is
    // Where a second row of buttons would lie under the window's edge they all stand in one.
    readonly property bool crowded: tight && buttons.needed > width

    signal act(int action)

    implicitHeight: parts.y + parts.implicitHeight

    function firstPicture(): string {
        for (const source of topic.sources) {
            if (source.picture.length > 0) {
                return source.picture;
            }
        }
        return "";
    }
    function arrange() {
        buttons.forceLayout();
        parts.forceLayout();
    }

    // Its size is the picture's, whether there is one or not: no text moves for it.
    SourcePicture {
        id: picture
        visible: details.pictured
        x: parent.width - width
        y: -details.above
        width: Theme.pictureWidth
        height: Theme.pictureHeight
        file: details.pictured ? details.firstPicture() : ""
        site: details.topic.site
    }
    Loader {
        id: versions
        active: !details.tiny && details.topic.versionText.length > 0
        y: 4
        width: parent.width - (details.pictured ? picture.width + 20 : 0)
        sourceComponent: VersionLine {
            topic: details.topic
        }
    }
    Column {
        id: parts
        y: Math.max(versions.active ? versions.y + versions.implicitHeight : 0, details.pictured ? picture.y + picture.height : 0) + (details.tiny ? 6 : details.tight ? 8 : 12)
        width: parent.width
        spacing: details.tiny ? 6 : details.tight ? 8 : 12

        Loader {
            active: details.topic.captureProblem.length > 0
            visible: active
            width: parent.width
            sourceComponent: Label {
                text: details.topic.captureProblem
                color: Theme.tintInk
                maximumLineCount: details.tiny ? 1 : 3
                elide: Text.ElideRight
            }
        }
        CardText {
            visible: text.length > 0 && !(details.tiny && Theme.textScale > 110)
            width: parent.width
            text: details.topic.gist
            font: Theme.cardFont
            lineHeight: Theme.scaled(22)
            wrapMode: Text.Wrap
            // The versions over it take a line of it where there is little room.
            maximumLineCount: !details.tight ? 4 : !details.tiny && details.topic.versionText.length > 0 ? 1 : 2
            elide: Text.ElideRight
        }
        WhyLine {
            width: parent.width
            lines: details.tight ? 2 : 4
            text: details.topic.why
        }
        StepLine {
            visible: !details.tiny && text.length > 0
            width: parent.width
            lines: details.tight ? 1 : 3
            text: details.topic.firstStep
        }
        Item {
            width: parent.width
            implicitHeight: details.showActions ? buttons.implicitHeight + buttons.y : 0
            visible: details.showActions

            Flow {
                id: buttons
                x: details.crowded ? -details.before : 0
                y: details.tight ? 0 : 2
                width: parent.width - x - (site.visible ? site.implicitWidth + 12 : 0)
                spacing: details.tiny ? 5 : details.tight ? 8 : 10

                readonly property real needed: {
                    let sum = -spacing;
                    for (let i = 0; i < all.count; ++i) {
                        sum += ((all.itemAt(i) as ActionButton)?.fullWidth() ?? 0) + spacing;
                    }
                    return sum;
                }

                Repeater {
                    id: all
                    model: details.actions

                    ActionButton {
                        required property cardButton modelData
                        text: modelData.text
                        keys: modelData.keys
                        keysShown: !details.crowded || buttons.needed <= buttons.width // the hint names them too
                        primary: modelData.primary
                        leftPadding: details.tiny ? 8 : 15
                        font.pixelSize: details.tiny ? Theme.textNote : Theme.textBody
                        given: modelData.worth.length > 0 && modelData.worth === details.topic.worth
                        onClicked: details.act(modelData.action)
                    }
                }
            }
            Label {
                id: site
                visible: details.actions.length < 5 && !details.tight && details.width > 520
                anchors.right: parent.right
                anchors.verticalCenter: buttons.verticalCenter
                lineHeight: 1
                text: details.topic.sitesText
                color: Theme.inkFaint
                font.pixelSize: Theme.textNote
                wrapMode: Text.NoWrap
            }
        }
    }
}
