import QtQuick
import Vorle
import Vorle.Models

// Which span is told: back and on in time, and how long it is.
Row {
    id: choice

    required property FiguresModel figures

    spacing: 10

    ActionButton {
        quiet: true
        text: "‹"
        usable: choice.figures.canGoBack
        enabled: choice.figures.canGoBack
        anchors.verticalCenter: parent.verticalCenter
        Accessible.name: qsTr("Période précédente")
        onClicked: choice.figures.goBack()
    }
    Label {
        visible: Theme.windowWidth >= 800 || Theme.textScale <= 100 // else the title needs its place
        text: choice.figures.rangeText
        color: Theme.inkSoft
        wrapMode: Text.NoWrap
        lineHeight: 1
        anchors.verticalCenter: parent.verticalCenter
    }
    ActionButton {
        quiet: true
        text: "›"
        usable: choice.figures.canGoOn
        enabled: choice.figures.canGoOn
        anchors.verticalCenter: parent.verticalCenter
        Accessible.name: qsTr("Période suivante")
        onClicked: choice.figures.goOn()
    }
    Segments {
        name: qsTr("Période")
        labels: [qsTr("Semaine"), qsTr("Mois"), qsTr("Année")]
        chosen: choice.figures.kind
        onPicked: index => choice.figures.kind = index
    }
}
