import QtQuick
import Vorle

// What "À trier" offers a new user, one thing at a time: how to begin, then what to teach.
Invitation {
    id: offer

    required property Shell shell
    required property real room // of the window, for the section: a low one is the open card's
    readonly property bool begins: shell.onboarding.unfinished

    signal calibrationAsked

    visible: room >= 620 && (begins || shell.calibration.proposed)
    brief: room < 700
    title: begins ? qsTr("Finir le premier réglage") : shell.calibration.invitationTitle
    text: begins ? qsTr("Il reprend où tu l’as laissé. Ce que tu as dit est gardé.") : shell.calibration.invitationText
    action: begins ? qsTr("Continuer") : shell.calibration.invitationAction
    onAccepted: begins ? shell.onboarding.open() : offer.calibrationAsked()
    onDeclined: begins ? shell.onboarding.finish() : shell.calibration.skip()
}
