import QtQuick
import Vorle

// What "À trier" offers a new user, one thing at a time: how to begin, then what to teach.
Loader {
    id: offer

    required property Shell shell
    required property real room // of the window, for the section: a low one is the open card's
    readonly property bool begins: shell.onboarding.unfinished

    signal calibrationAsked

    visible: room >= 620 && (begins || shell.calibration.proposed)
    active: visible
    sourceComponent: Invitation {
        brief: offer.room < 700
        title: offer.begins ? qsTr("Finir le premier réglage") : offer.shell.calibration.invitationTitle
        text: offer.begins ? qsTr("Il reprend où tu l’as laissé. Ce que tu as dit est gardé.") : offer.shell.calibration.invitationText
        action: offer.begins ? qsTr("Continuer") : offer.shell.calibration.invitationAction
        onAccepted: offer.begins ? offer.shell.onboarding.open() : offer.calibrationAsked()
        onDeclined: offer.begins ? offer.shell.onboarding.finish() : offer.shell.calibration.skip()
    }
}
