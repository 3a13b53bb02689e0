#include "app/report/ReportMarkdown.h"

#include "app/labels/RunLabels.h"
#include "app/labels/Wording.h"
#include "app/report/FigureSentences.h"
#include "base/French.h"
#include "core/DurationText.h"
#include "core/NumberText.h"

#include <QStringList>

namespace vorle {

namespace {

/// A cell holds one line, and no sign that would end it.
QString cell(const QString &words) {
    return shownWords(words).simplified().replace(u'|', QStringLiteral("\\|"));
}

QString row(const QStringList &cells) {
    return QStringLiteral("| ") + cells.join(QStringLiteral(" | ")) + QStringLiteral(" |");
}

QString table(const QStringList &heads, const QList<QStringList> &rows) {
    QStringList lines{row(heads), row(QStringList{QStringLiteral("---")} +
                                      QStringList(heads.size() - 1, QStringLiteral("---:")))};
    for (const QStringList &each : rows) {
        lines += row(each);
    }
    return lines.join(u'\n');
}

/// A chart in words and figures: its sentence, and its table where there is anything to count.
QString chart(const QString &sentence, const QStringList &heads, const QList<QStringList> &rows) {
    const QString title = QStringLiteral("## ") + sentence;
    return rows.isEmpty() ? title : title + QStringLiteral("\n\n") + table(heads, rows);
}

QString foundChart(const WatchFigures &figures, const ReportPeriod &period, const QTimeZone &zone) {
    QList<QStringList> rows;
    for (qsizetype i = 0; i < figures.parts.size(); ++i) {
        const auto &part = figures.parts[i];
        rows += QStringList{partLabel(period, i, zone), numberText(part.found),
                            numberText(part.kept), numberText(part.done)};
    }
    return chart(
        foundSentence(figures),
        {French::tr("Période"), French::tr("trouvés"), French::tr("gardés"), French::tr("faits")},
        rows);
}

QString timeChart(const WatchFigures &figures, const ReportPeriod &period, const QTimeZone &zone) {
    QList<QStringList> rows;
    for (qsizetype i = 0; i < figures.parts.size(); ++i) {
        rows += QStringList{partLabel(period, i, zone), durationText(figures.parts[i].minutes)};
    }
    return chart(timeSentence(figures), {French::tr("Période"), French::tr("temps fait")}, rows);
}

QString scoresChart(const WatchFigures &figures) {
    QList<QStringList> rows;
    for (const auto &score : figures.scores) {
        rows += QStringList{numberText(score.score), numberText(score.kept),
                            numberText(score.later), numberText(score.dismissed)};
    }
    return chart(
        scoresSentence(figures),
        {French::tr("Note"), French::tr("gardés"), French::tr("plus tard"), French::tr("écartés")},
        rows);
}

QString sourcesChart(const WatchFigures &figures) {
    QList<QStringList> rows;
    for (const auto &source : figures.sources) {
        rows += QStringList{cell(source.name), numberText(source.found), numberText(source.kept)};
    }
    return chart(sourcesSentence(figures),
                 {French::tr("D’où"), French::tr("trouvés"), French::tr("gardés")}, rows);
}

QString runsChart(const WatchFigures &figures, const QDateTime &now, const QTimeZone &zone) {
    QList<QStringList> rows;
    for (const auto &run : figures.runs) {
        rows += QStringList{dayText(run.date, now, zone), numberText(run.added),
                            spentText(run.calls, run.seconds, run.costUSD)};
    }
    return chart(runsSentence(figures),
                 {French::tr("Fouille"), French::tr("sujets"), French::tr("ce qu’elle a pris")},
                 rows);
}

QString stepsTable(const WatchFigures &figures) {
    QList<QStringList> rows;
    for (const StepReport &step : figures.steps) {
        rows += QStringList{stepName(step.step), numberText(step.calls), secondsText(step.seconds),
                            step.costUSD > 0 ? costText(step.costUSD) : QString()};
    }
    return rows.isEmpty() ? QString()
                          : table({French::tr("Étape"), French::tr("appels"), French::tr("temps"),
                                   French::tr("coût")},
                                  rows);
}

} // namespace

QString reportMarkdown(const WatchFigures &figures, const ReportPeriod &period,
                       const QDateTime &now, const QTimeZone &zone) {
    QStringList blocks{QStringLiteral("# ") +
                           French::tr("Bilan · %1").arg(rangeText(period, now, zone)),
                       countsText(figures),
                       durationText(figures.minutes) + u' ' + budgetText(figures),
                       foundChart(figures, period, zone),
                       timeChart(figures, period, zone),
                       scoresChart(figures),
                       correctionsSentence(figures),
                       reflexesSentence(figures),
                       sourcesChart(figures),
                       runsChart(figures, now, zone),
                       stepsTable(figures)};
    blocks.removeAll(QString()); // what there is nothing to say of
    return blocks.join(QStringLiteral("\n\n")) + u'\n';
}

} // namespace vorle
