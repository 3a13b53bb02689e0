import QtQuick

// A part of the window that is read when it is first needed. Naming its type would read it, and all
// that it names, before the first frame.
Loader {
    id: later

    required property string document // beside this file
    property var given: ({}) // the properties it is made with
    property bool needed: false
    property bool soon: false // once the window stands it is read in the background

    // At once. What is being read in the background is let go: a loader that is told to go on at
    // once forgets what it was given.
    function need() {
        if (item === null) {
            active = false;
            asynchronous = false;
            begin();
        }
    }
    function begin() {
        setSource(Qt.resolvedUrl(document), given);
        active = true;
    }

    property bool told: false // it knows what it is given

    active: false
    onNeededChanged: if (needed && told) need()
    Component.onCompleted: {
        told = true;
        if (needed) {
            need();
        }
    }

    // A key that opens it need not wait for it to be read.
    Timer {
        running: later.soon
        interval: 400
        onTriggered: {
            if (!later.active) {
                later.asynchronous = true;
                later.begin();
            }
        }
    }
}
