import QtQuick
import QtQuick.Templates as T
import Vorle

// Where one is in a long list: a line at its edge while it moves or is pointed at.
T.ScrollBar {
    id: bar

    implicitWidth: 9
    padding: 2
    minimumSize: 0.06
    visible: size < 1
    Accessible.ignored: true // the keys scroll

    contentItem: Rectangle {
        implicitWidth: 5
        radius: width / 2
        color: Theme.inkFaint
        opacity: bar.pressed ? 0.8 : bar.active ? 0.5 : 0

        Behavior on opacity {
            NumberAnimation {
                duration: Theme.calm
            }
        }
    }
}
