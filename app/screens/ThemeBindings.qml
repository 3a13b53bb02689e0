import QtQuick
import Vorle

// Turns the theme to what the user chose and the system shows.
Item {
    id: bindings

    required property var shell
    required property bool systemDark
    required property bool reducedMotion
    required property string displayFamily
    required property string textFamily

    Binding {
        target: Theme
        property: "dark"
        value: bindings.shell.appearance === "Sombre" || (bindings.shell.appearance !== "Clair" && bindings.systemDark)
    }
    Binding {
        target: Theme
        property: "accentName"
        value: bindings.shell.accent
    }
    Binding {
        target: Theme
        property: "reducedMotion"
        value: bindings.reducedMotion
    }
    Binding {
        target: Theme
        property: "displayFamily"
        value: bindings.displayFamily
        when: bindings.displayFamily.length > 0
    }
    Binding {
        target: Theme
        property: "textFamily"
        value: bindings.textFamily
        when: bindings.textFamily.length > 0
    }
}
