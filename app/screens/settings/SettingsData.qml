import QtQuick
import Vorle
import Vorle.Models

// Where everything is, and how it leaves and comes back.
SettingsPage {
    id: page

    required property Shell shell
    readonly property Screens screens: shell.screens
    readonly property TransferModel transfer: screens.transfer

    signal onboardingAsked
    signal calibrationAsked

    name: qsTr("Tes données")

    SettingRow {
        pages: page.pages
        key: "topicsFile"
        help: page.screens.topicsPath

        ActionButton {
            text: page.screens.revealLabel
            onClicked: page.screens.revealTopics()
        }
    }
    SettingRow {
        pages: page.pages
        key: "archive"
        help: page.transfer.sizeText

        Row {
            spacing: 8

            ActionButton {
                text: qsTr("Exporter…")
                usable: !page.transfer.busy
                onClicked: page.transfer.exportJson()
            }
            ActionButton {
                text: qsTr("Importer…")
                usable: !page.transfer.busy
                onClicked: page.transfer.importFile()
            }
        }
    }
    SettingRow {
        pages: page.pages
        key: "notes"

        ActionButton {
            text: qsTr("Exporter un dossier…")
            usable: !page.transfer.busy
            onClicked: page.transfer.exportNotes()
        }
    }
    // What became of it, where it was asked for.
    Item {
        width: parent.width
        height: visible ? Math.max(told.implicitHeight, stopper.height) + 24 : 0
        visible: page.transfer.word.length > 0

        Label {
            id: told
            anchors.verticalCenter: parent.verticalCenter
            width: parent.width - (stopper.visible ? stopper.width + 16 : 0)
            text: page.transfer.word
            color: page.transfer.failed ? Theme.tintInk : Theme.inkSoft
            font.pixelSize: Theme.textNote
            wrapMode: Text.WrapAtWordBoundaryOrAnywhere
            Accessible.role: Accessible.AlertMessage
        }
        ActionButton {
            id: stopper
            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            visible: page.transfer.busy
            text: qsTr("Arrêter")
            onClicked: page.transfer.stop()
        }
        Rectangle {
            anchors.bottom: parent.bottom
            width: parent.width
            height: 1
            color: Theme.line
        }
    }
    SettingRow {
        pages: page.pages
        key: "diagnostics"

        ActionButton {
            text: qsTr("Copier")
            Accessible.name: qsTr("Copier les diagnostics")
            onClicked: page.screens.copyDiagnostics()
        }
    }
    SettingRow {
        pages: page.pages
        key: "onboarding"

        ActionButton {
            text: qsTr("Recommencer")
            Accessible.name: qsTr("Recommencer le premier réglage")
            onClicked: page.onboardingAsked()
        }
    }
    SettingRow {
        pages: page.pages
        key: "calibration"

        ActionButton {
            text: qsTr("Recommencer")
            Accessible.name: qsTr("Recommencer le premier tri")
            onClicked: page.calibrationAsked()
        }
    }
}
