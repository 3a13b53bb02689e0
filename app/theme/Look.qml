import QtQuick
import Vorle
import Vorle.Models

// Turns the theme to what the user chose and the system shows. Made before the screens: their texts
// would otherwise be laid out in one typeface and again in another.
Item {
    id: look

    required property SettingsModel settings
    property bool systemDark: false
    property bool reducedMotion: false
    required property string displayFamily
    required property string textFamily

    Binding {
        target: Theme
        property: "dark"
        value: look.settings.appearance === "Sombre" || (look.settings.appearance !== "Clair" && look.systemDark)
    }
    Binding {
        target: Theme
        property: "accentName"
        value: look.settings.accent
    }
    Binding {
        target: Theme
        property: "textScale"
        value: look.settings.textScale
    }
    Binding {
        target: Theme
        property: "reducedMotion"
        value: look.reducedMotion
    }
    Binding {
        target: Theme
        property: "displayFamily"
        value: look.displayFamily
        when: look.displayFamily.length > 0
    }
    Binding {
        target: Theme
        property: "textFamily"
        value: look.textFamily
        when: look.textFamily.length > 0
    }
}
