pragma Singleton

import QtQuick

// Every colour, size, radius and duration of the screens, by what it is for. Warm paper and
// near-black ink, one accent that is used rarely; no literal stands anywhere else.
QtObject {
    id: theme

    // Set by the window from the user's settings and the system's.
    property bool dark: false
    property string accentName: "Braise"
    property bool reducedMotion: false
    property bool mac: Qt.platform.os === "osx"

    // Surfaces, from the ground up.
    readonly property color paper: dark ? "#191613" : "#FAF6F0"
    readonly property color side: dark ? "#211D19" : "#F2EBE1"
    readonly property color card: dark ? "#26221D" : "#FFFFFF"
    readonly property color raised: dark ? "#2D2822" : "#FFFFFF"
    readonly property color sunken: dark ? "#1F1B17" : "#F6F1E9"
    readonly property color line: dark ? "#3A342C" : "#E9E0D4"
    readonly property color well: dark ? "#12100D" : "#EFE8DD" // the track of a choice
    readonly property color segment: dark ? "#332D26" : "#FFFFFF" // what is chosen on it
    readonly property color edge: dark ? "#4C4439" : "#D9CDBD" // hollow bars, dashes
    readonly property color mid: dark ? "#76695A" : "#B5A58F" // of a chart, beside `strong`
    readonly property color strong: dark ? "#C3B7A7" : "#5E5346"
    readonly property color hover: dark ? "#2A251F" : "#F3ECE2" // a row under the mouse
    readonly property color veil: dark ? "#99000000" : "#59241D16"
    readonly property color shadow: dark ? "#40000000" : "#0F241D16"

    // Three strengths of ink, and no grey.
    readonly property color ink: dark ? "#F4EDE3" : "#241D16"
    readonly property color inkSoft: dark ? "#C3B7A7" : "#5E5346"
    readonly property color inkFaint: dark ? "#A0937F" : "#736757"

    // The one accent: where you are, what to press first, what is due.
    readonly property var accents: ({
            "Braise": { light: "#C9431A", dark: "#FF8552", tint: "#FBE7DC", tintDark: "#3A2519", deep: "#A8350F" },
            "Framboise": { light: "#B3265E", dark: "#FF86AE", tint: "#FAE3EB", tintDark: "#3B1D29", deep: "#9A1C4E" },
            "Lagune": { light: "#0E7268", dark: "#56CFC0", tint: "#DDF0ED", tintDark: "#18312D", deep: "#0B5F57" },
            "Indigo": { light: "#4B45BE", dark: "#A9A5FF", tint: "#E7E6F8", tintDark: "#26244A", deep: "#403AA8" }
        })
    readonly property var accentPair: accents[accentName] ?? accents["Braise"]
    readonly property color accent: dark ? accentPair.dark : accentPair.light
    readonly property color accentTint: dark ? accentPair.tintDark : accentPair.tint
    readonly property color tintInk: dark ? accentPair.dark : accentPair.deep // words on the tint
    // The one that white digits stand on, in both appearances.
    readonly property color accentStrong: accentPair.light
    readonly property color accentDown: Qt.darker(accent, dark ? 1.04 : 1.11) // while it is pressed
    readonly property color accentInk: dark ? "#191613" : "#FFFFFF"
    readonly property color accentKey: dark ? "#33191613" : "#38481000"

    // Type: the display face for titles, digits and section names, the system's for the rest. Few
    // sizes: each that a screen shows is a font to be made before it shows.
    property string displayFamily: "sans-serif"
    property string textFamily: "sans-serif"
    readonly property string codeFamily: mac ? "Menlo" : "monospace"
    property int textScale: 100 // of all type, in percent; what holds a text grows with it
    readonly property int textSmall: scaled(12)
    readonly property int textNote: scaled(13)
    readonly property int textBody: scaled(14)
    readonly property int textMenu: scaled(15)
    readonly property int textCard: scaled(15)
    readonly property int textLarge: scaled(16)
    readonly property int textReading: scaled(17)
    readonly property int titleTier: scaled(15)
    readonly property int cardTitle: scaled(17)
    readonly property int cardTitleOpen: scaled(20)
    readonly property int titleSmall: scaled(17)
    readonly property int titleCard: scaled(19)
    readonly property int titleOpen: scaled(25)
    readonly property int titleScreen: scaled(34)
    readonly property real leading: 1.35
    // Whole fonts for what stands in every row of a list: set part by part, each part is bound and
    // each text looks for its typeface anew.
    readonly property font noteFont: Qt.font({ family: textFamily, pixelSize: textNote })
    readonly property font noteFontMedium: Qt.font({ family: textFamily, pixelSize: textNote, weight: Font.Medium })
    readonly property font cardFont: Qt.font({ family: textFamily, pixelSize: textCard })
    readonly property font cardFontMedium: Qt.font({ family: textFamily, pixelSize: textCard, weight: Font.Medium })
    readonly property font bodyFont: Qt.font({ family: textFamily, pixelSize: textBody })
    readonly property font bodyFontMedium: Qt.font({ family: textFamily, pixelSize: textBody, weight: Font.Medium })
    readonly property font bodyFontDemi: Qt.font({ family: textFamily, pixelSize: textBody, weight: Font.DemiBold })
    readonly property font keyFont: Qt.font({ family: textFamily, pixelSize: textSmall, weight: Font.Medium })
    readonly property font cardTitleFont: Qt.font({ family: displayFamily, pixelSize: cardTitle, weight: Font.Bold, letterSpacing: -0.012 * cardTitle })
    readonly property font cardTitleOpenFont: Qt.font({ family: displayFamily, pixelSize: cardTitleOpen, weight: Font.Bold, letterSpacing: -0.012 * cardTitleOpen })
    readonly property font noteFontDemi: Qt.font({ family: textFamily, pixelSize: textNote, weight: Font.DemiBold })

    // A 4 px grid.
    readonly property int gap: 4
    readonly property int cardGap: 8
    property int windowWidth: 1180 // what it leaves is shared out by it
    readonly property int margin: windowWidth < 800 ? 20 : 36
    readonly property int cardPadding: 22
    readonly property int pictureWidth: 120 // at the right of an open card
    readonly property int pictureHeight: 76
    readonly property int ghostHeight: grown(40)
    readonly property int labelColumn: scaled(82) // of "Pourquoi toi" and "Premier pas"
    readonly property int headingHeight: grown(44)
    readonly property int radiusCard: 18
    readonly property int radiusButton: 12
    readonly property int radiusKey: 6
    readonly property int hit: 28
    readonly property int sideWidth: windowWidth < 900 ? 200 : 248
    readonly property int columnWidth: 920
    readonly property int readingWidth: 680
    // From here on the reading page stands beside the list.
    readonly property bool roomy: windowWidth >= 1500

    // Motion that explains; none when the system asks for less.
    readonly property int quick: reducedMotion ? 0 : 120
    readonly property int calm: reducedMotion ? 0 : 200
    // Of a decision: the card folds to its line, the next rises to its height, shows its details.
    readonly property int fold: reducedMotion ? 0 : 160
    readonly property int rise: reducedMotion ? 0 : 80
    readonly property int reveal: reducedMotion ? 0 : 90
    readonly property int sweep: 1400 // of a line that tells only that it goes on
    // Of the end of triage: all of it is over by then, the first disc lands after, each takes.
    readonly property int landing: reducedMotion ? 0 : 250
    readonly property int landsAfter: 60
    readonly property int lands: 70
    readonly property int landsApart: 24
    readonly property int blinkPause: 7000
    readonly property int dozes: 45000 // after somebody was there last
    readonly property int ghostStay: 5000
    readonly property int addedStay: 3000

    // A size of type, as large as the user wants it.
    function scaled(pixels: real): int {
        return Math.round(pixels * textScale / 100);
    }
    // The height of what holds a text: it grows with it, and never gets too small to be hit.
    function grown(pixels: real): int {
        return Math.round(pixels * Math.max(100, textScale) / 100);
    }
    // How a line of that text is fitted into that width. One that is short enough anyway is not
    // measured, nor is one that has no width yet: fitting lays it out several times over.
    function fitting(text: string, pixels: real, width: real): int {
        return width > 0 && text.length * pixels * 0.7 > width ? Text.HorizontalFit : Text.FixedSize;
    }
    // How far what moves has come, 0 to 1, slowing down towards its end.
    function eased(passed: real, length: real): real {
        const left = length > 0 ? Math.max(0, 1 - Math.max(0, passed) / length) : 0;
        return 1 - left * left * left;
    }
    // A pair of colours from the score scale, for the appearance in use.
    function pick(light: string, darkValue: string): color {
        const chosen = dark ? darkValue : light;
        return chosen === "accent" ? accentStrong : chosen.length > 0 ? chosen : "transparent";
    }
}
