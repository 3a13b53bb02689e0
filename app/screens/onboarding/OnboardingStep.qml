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

    Column {
        id: column
        width: parent.width
        spacing: 10
    }
}
