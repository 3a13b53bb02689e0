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
    readonly property bool coming: writing === "writing" || writing === "queued"

    name: written ? qsTr("Fiche de lecture · ") + topic.title : qsTr("Fiche de lecture")
    visible: topic.topicId !== ""

    Loader {
        width: parent.width
        active: !view.written && (view.coming || view.writing === "failed")
        visible: active
        sourceComponent: BriefCard {
            title: view.coming ? qsTr("J’écris la fiche de lecture…") : qsTr("Je n’ai pas pu écrire la fiche.")
            text: view.coming ? qsTr("Je relis les sources · environ une minute") : qsTr("Les sources n’ont pas répondu, ou ton IA non plus.")
            more: view.coming ? "" : view.details.briefFailure
            button: view.coming ? "" : qsTr("Réessayer")
            busy: view.coming
            onPressed: view.details.askBrief()
        }
    }
    ActionButton {
        visible: !view.written && !view.coming && view.writing !== "failed"
        text: qsTr("Écrire la fiche")
        onClicked: view.details.askBrief()
    }
    Repeater {
        model: view.details.essentials

        BriefPart {
            required property readingPart modelData
            width: view.width
            title: modelData.title
            body: modelData.body
            code: modelData.code
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
            pictured: false
            onClicked: view.linkOpened(url)
        }
    }
}
