import QtQuick
import Vorle

// A part of the window that is read when it is first asked for. Naming its type would read it, and
// all that it names, before the first frame.
Loader {
    id: later

    required property Shell shell
    required property string document // beside this file; its root has a `shell`

    // At once. What is being read in the background is let go: a loader that is told to go on at
    // once forgets what it was given.
    function need() {
        if (item === null) {
            active = false;
            asynchronous = false;
            setSource(Qt.resolvedUrl(document), { shell: shell });
            active = true;
        }
    }

    active: false
    Component.onCompleted: setSource(Qt.resolvedUrl(document), { shell: shell })
}
