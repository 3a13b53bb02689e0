import QtQuick
import Vorle
import Vorle.Models

// The reading notes of a topic: written, being written, failed, or not asked for yet.
Chapter {
    id: view

    required property topicCard topic
    required property TopicPage details

    signal linkOpened(string url)

    readonly property bool written: details.hasBrief
    readonly property string writing: topic.briefState

    name: written ? qsTr("Fiche de lecture · ") + topic.title : qsTr("Fiche de lecture")
    visible: topic.topicId !== ""

    Column {
        width: parent.width
        spacing: 8
        visible: !view.written && (view.writing === "writing" || view.writing === "queued")

        Label {
            width: parent.width
            text: qsTr("J’écris la fiche de lecture…")
            font.weight: Font.DemiBold
        }
        Label {
            width: parent.width
            text: qsTr("Je relis les sources · environ une minute")
            color: Theme.inkSoft
        }
    }
    Column {
        width: parent.width
        spacing: 8
        visible: !view.written && view.writing === "failed"

        Label {
            width: parent.width
            text: qsTr("Je n’ai pas pu écrire la fiche.")
            font.weight: Font.DemiBold
        }
        Label {
            width: parent.width
            text: qsTr("Les sources n’ont pas répondu, ou ton IA non plus.")
            color: Theme.inkSoft
        }
        SelectableText {
            width: parent.width
            visible: text.length > 0
            text: view.details.briefFailure
            color: Theme.inkSoft
        }
    }
    ActionButton {
        visible: !view.written && view.writing !== "queued" && view.writing !== "writing"
        text: view.writing === "failed" ? qsTr("Réessayer") : qsTr("Écrire la fiche")
        onClicked: view.details.askBrief()
    }
    Repeater {
        model: view.details.essentials

        BriefPart {
            required property readingPart modelData
            width: view.width
            title: modelData.title
            body: modelData.body
            strong: true
        }
    }
    BriefPart {
        width: parent.width
        visible: body.length > 0
        title: qsTr("Pour ton projet")
        body: view.details.forProject
    }
    Repeater {
        model: view.details.parts

        BriefPart {
            required property readingPart modelData
            width: view.width
            title: modelData.title
            body: modelData.body
            code: modelData.code
        }
    }
    BriefPart {
        width: parent.width
        visible: body.length > 0
        title: qsTr("Ce qui reste flou")
        body: view.details.unclear
    }
    Repeater {
        model: view.details.briefSources

        SourceRow {
            required property namedLink modelData
            width: view.width
            name: modelData.name
            url: modelData.url
            address: modelData.address
            adds: modelData.adds
            onClicked: view.linkOpened(url)
        }
    }
}
