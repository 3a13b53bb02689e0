import QtQuick
import Vorle
import Vorle.Models

// What a sitting of triage came to: the scores' discs side by side, by where their topics went. They
// land one after the other; where there is no room for all of them, each group says how many more.
Item {
    id: board

    property var groups: [] // SortedGroup
    property bool small: false
    readonly property int size: small ? 30 : 40
    readonly property int gap: small ? 6 : 8
    readonly property int between: small ? 15 : 26 // on both sides of a line
    // So many places each group has at most.
    readonly property int most: mostIn(width)
    readonly property int count: landed(groups.length)
    readonly property real step: count > 1 ? Math.min(Theme.landsApart, (Theme.landing - Theme.landsAfter - Theme.lands) / (count - 1)) : 0
    property real clock: Theme.landing // ms

    implicitHeight: row.implicitHeight
    implicitWidth: row.implicitWidth

    function land() {
        motion.stop();
        if (Theme.landing > 0) {
            motion.start();
        }
    }
    function places(group: sortedGroup, limit: int): int {
        return Math.min(group.badges.length, limit);
    }
    // How many places stand before that group.
    function landed(index: int): int {
        let sum = 0;
        for (let i = 0; i < Math.min(index, groups.length); ++i) {
            sum += places(groups[i], most);
        }
        return sum;
    }
    function widthFor(limit: int): real {
        let sum = (groups.length - 1) * (2 * between + 1);
        for (let i = 0; i < groups.length; ++i) {
            sum += Math.max(places(groups[i], limit) * (size + gap) - gap, names.itemAt(i)?.nameWidth ?? 0);
        }
        return sum;
    }
    function mostIn(room: real): int {
        let longest = 0;
        for (let i = 0; i < groups.length; ++i) {
            longest = Math.max(longest, groups[i].badges.length);
        }
        while (longest > 2 && widthFor(longest) > room) {
            --longest;
        }
        return longest;
    }

    NumberAnimation {
        id: motion
        target: board
        property: "clock"
        from: 0
        to: Theme.landing
        duration: Theme.landing
    }
    Row {
        id: row
        anchors.horizontalCenter: parent.horizontalCenter
        spacing: board.between

        Repeater {
            id: names
            model: board.groups

            Row {
                id: group
                required property int index
                required property sortedGroup modelData
                readonly property real nameWidth: name.implicitWidth
                readonly property int places: board.places(modelData, board.most)
                readonly property int over: modelData.badges.length - places
                readonly property int before: board.landed(index)

                spacing: board.between
                Accessible.role: Accessible.StaticText
                Accessible.name: modelData.text

                Rectangle {
                    visible: group.index > 0
                    y: 0
                    width: 1
                    height: board.size
                    color: Theme.line
                }
                Column {
                    spacing: board.small ? 6 : 10

                    Row {
                        anchors.horizontalCenter: parent.horizontalCenter
                        spacing: board.gap

                        Repeater {
                            model: group.places

                            Item {
                                id: place
                                required property int index
                                readonly property bool last: group.over > 0 && index === group.places - 1
                                readonly property real way: Theme.landing > 0 ? Theme.eased(board.clock - Theme.landsAfter - (group.before + index) * board.step, Theme.lands) : 1

                                width: board.size
                                height: board.size
                                opacity: way
                                scale: 0.6 + 0.4 * way
                                transform: Translate {
                                    y: -12 * (1 - place.way)
                                }

                                ScoreBadge {
                                    visible: !place.last
                                    size: board.size
                                    look: group.modelData.badges[place.index]
                                    Accessible.ignored: true
                                }
                                Rectangle {
                                    anchors.fill: parent
                                    visible: place.last
                                    radius: width / 2
                                    color: Theme.well

                                    Text {
                                        anchors.centerIn: parent
                                        width: parent.width - 6
                                        text: "+" + (group.over + 1)
                                        color: Theme.inkSoft
                                        font.family: Theme.displayFamily
                                        font.pixelSize: board.small ? 12 : 15
                                        font.weight: Font.Bold
                                        fontSizeMode: Text.HorizontalFit
                                        minimumPixelSize: 8
                                        horizontalAlignment: Text.AlignHCenter
                                        Accessible.ignored: true
                                    }
                                }
                            }
                        }
                    }
                    Label {
                        id: name
                        anchors.horizontalCenter: parent.horizontalCenter
                        text: group.modelData.name
                        color: Theme.inkSoft
                        font.pixelSize: Theme.textNote
                        lineHeight: 1.15
                        wrapMode: Text.NoWrap
                        Accessible.ignored: true
                    }
                }
            }
        }
    }
}
