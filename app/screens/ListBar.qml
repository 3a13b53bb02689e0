import QtQuick
import QtQuick.Templates as T
import Vorle

// The bar of a list of topics. It is read after the list: the module that it comes from would hold
// up the window's first frame.
Item {
    id: place

    required property ListView list
    required property CardSight sight

    ScrollLine {
        id: bar
        parent: place.list
        Component.onCompleted: place.list.T.ScrollBar.vertical = bar
    }
    Binding {
        target: place.sight
        property: "pulled"
        value: bar.pressed
    }
}
