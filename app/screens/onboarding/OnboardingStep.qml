import QtQuick
import Vorle

// One step of the first set-up.
FocusScope {
    id: step

    required property Shell shell
    readonly property OnboardingModel model: shell.onboarding
    signal footAsked // the keyboard rests on the button that goes on

    default property alias content: column.data

    implicitHeight: column.implicitHeight

    // The keyboard goes to what is asked first.
    function takeFocus() {
        forceActiveFocus(Qt.TabFocusReason);
    }

    // Takes what is being written; false where that cannot be, and the keyboard rests on it.
    function settled(): bool {
        return true;
    }
    // The same before it is passed over: what cannot be taken is left.
    function passOver() {
        settled();
    }

    Column {
        id: column
        width: parent.width
        spacing: 10
    }
}
