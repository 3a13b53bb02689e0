import QtQuick
import Vorle
import Vorle.Models

// The figures of a period, each drawn and said.
Column {
    id: page

    required property FiguresModel figures
    readonly property bool wide: width >= 720
    readonly property real cardWidth: wide ? (width - 12) / 2 : width

    spacing: 20

    Item {
        id: numbers

        readonly property bool inLine: counts.implicitWidth + time.implicitWidth + 24 <= width

        width: parent.width
        implicitHeight: inLine ? Math.max(counts.implicitHeight, time.implicitHeight) : counts.implicitHeight + 10 + time.implicitHeight

        Row {
            id: counts
            spacing: page.wide ? 48 : 26

            Repeater {
                model: page.figures.counts

                Figure {
                    required property figureCount modelData
                    value: modelData.value
                    label: modelData.label
                }
            }
        }
        Figure {
            id: time
            anchors.right: parent.right
            y: numbers.inLine ? 0 : counts.implicitHeight + 10
            value: page.figures.timeText
            label: page.figures.timeOf
            rightwards: true
        }
    }
    Grid {
        width: parent.width
        columns: page.wide ? 2 : 1
        spacing: 12

        FigureCard {
            width: page.cardWidth
            height: Math.max(implicitHeight, page.wide ? times.implicitHeight : 0)
            sentence: page.figures.foundSentence
            inWords: page.figures.partsInWords
            caption: page.figures.partName
            legend: [
                LegendMark { name: qsTr("trouvés"); fill: Theme.edge; hollow: true },
                LegendMark { name: qsTr("gardés"); fill: Theme.strong },
                LegendMark { name: qsTr("faits"); fill: Theme.accentStrong }
            ]

            BarGroups {
                width: parent.width
                parts: page.figures.parts
            }
        }
        FigureCard {
            id: times
            width: page.cardWidth
            sentence: page.figures.timeSentence
            inWords: page.figures.timesInWords
            caption: page.figures.partBudget > 0 ? qsTr("Temps fait, contre %1 par semaine").arg(page.figures.partBudgetText) : qsTr("Temps fait")

            TimeBars {
                width: parent.width
                parts: page.figures.parts
                budget: page.figures.partBudget
                budgetText: page.figures.partBudgetText
            }
        }
        FigureCard {
            id: scores
            width: page.cardWidth
            height: Math.max(implicitHeight, page.wide ? sources.implicitHeight : 0)
            sentence: page.figures.scoresSentence
            inWords: page.figures.scoresInWords
            caption: qsTr("Mes notes et tes choix")
            note: page.figures.learnedText
            legend: [
                LegendMark { name: qsTr("gardé"); fill: Theme.strong },
                LegendMark { name: qsTr("plus tard"); fill: Theme.mid },
                LegendMark { name: qsTr("écarté"); fill: Theme.edge; hollow: true }
            ]

            ShareStack {
                width: parent.width
                scores: page.figures.scores
            }
        }
        FigureCard {
            id: sources
            width: page.cardWidth
            height: Math.max(implicitHeight, page.wide ? scores.implicitHeight : 0)
            sentence: page.figures.sourcesSentence
            inWords: page.figures.sourcesInWords
            caption: qsTr("D’où viennent les bons")
            legend: [
                LegendMark { name: qsTr("trouvés"); fill: Theme.edge; hollow: true },
                LegendMark { name: qsTr("gardés"); fill: Theme.strong }
            ]

            SourceBars {
                width: parent.width
                sources: page.figures.sources
            }
        }
    }
    CostCard {
        width: parent.width
        figures: page.figures
    }
}
