import QtQuick
import Vorle

// What "À trier" offers a new user, one thing at a time: how to begin, then what to teach.
Invitation {
    id: offer

    required property SectionSlots place
    readonly property Shell shell: place.shell
    readonly property bool begins: shell.onboarding.unfinished

    brief: place.inboxRoom < 700
    title: begins ? qsTr("Finir le premier réglage") : shell.calibration.invitationTitle
    text: begins ? qsTr("Il reprend où tu l’as laissé. Ce que tu as dit est gardé.") : shell.calibration.invitationText
    action: begins ? qsTr("Continuer") : shell.calibration.invitationAction
    onAccepted: begins ? shell.onboarding.open() : place.panelAsked(PanelHost.Calibration)
    onDeclined: begins ? shell.onboarding.finish() : shell.calibration.skip()
}
