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

} // namespace

QString reportMarkdown(const WatchFigures &figures, const ReportPeriod &period,
                       const QDateTime &now, const QTimeZone &zone) {
    QStringList blocks{
        QStringLiteral("# ") + French::tr("Bilan · %1").arg(rangeText(period, now, zone)),
        countsText(figures), durationText(figures.minutes) + u' ' + budgetText(figures)};
    const auto chart = [&](const QString &sentence, const QStringList &heads,
                           const QList<QStringList> &rows) {
        blocks += QStringLiteral("## ") + sentence;
        if (!rows.isEmpty()) {
            blocks += table(heads, rows);
        }
    };
    QList<QStringList> parts;
    QList<QStringList> times;
    for (qsizetype i = 0; i < figures.parts.size(); ++i) {
        const auto &part = figures.parts[i];
        const QString name = partLabel(period, i, zone);
        parts +=
            QStringList{name, numberText(part.found), numberText(part.kept), numberText(part.done)};
        times += QStringList{name, durationText(part.minutes)};
    }
    chart(foundSentence(figures),
          {French::tr("Période"), French::tr("trouvés"), French::tr("gardés"), French::tr("faits")},
          parts);
    chart(timeSentence(figures), {French::tr("Période"), French::tr("temps fait")}, times);
    QList<QStringList> scores;
    for (const auto &score : figures.scores) {
        scores += QStringList{numberText(score.score), numberText(score.kept),
                              numberText(score.later), numberText(score.dismissed)};
    }
    chart(
        scoresSentence(figures),
        {French::tr("Note"), French::tr("gardés"), French::tr("plus tard"), French::tr("écartés")},
        scores);
    blocks += correctionsSentence(figures);
    if (const QString reflexes = reflexesSentence(figures); !reflexes.isEmpty()) {
        blocks += reflexes;
    }
    QList<QStringList> sources;
    for (const auto &source : figures.sources) {
        sources +=
            QStringList{cell(source.name), numberText(source.found), numberText(source.kept)};
    }
    chart(sourcesSentence(figures),
          {French::tr("D’où"), French::tr("trouvés"), French::tr("gardés")}, sources);
    QList<QStringList> runs;
    for (const auto &run : figures.runs) {
        runs += QStringList{dayText(run.date, now, zone), numberText(run.added),
                            spentText(run.calls, run.seconds, run.costUSD)};
    }
    chart(runsSentence(figures),
          {French::tr("Fouille"), French::tr("sujets"), French::tr("ce qu’elle a pris")}, runs);
    QList<QStringList> steps;
    for (const StepReport &step : figures.steps) {
        steps += QStringList{stepName(step.step), numberText(step.calls), secondsText(step.seconds),
                             step.costUSD > 0 ? costText(step.costUSD) : QString()};
    }
    if (!steps.isEmpty()) {
        blocks += table(
            {French::tr("Étape"), French::tr("appels"), French::tr("temps"), French::tr("coût")},
            steps);
    }
    return blocks.join(QStringLiteral("\n\n")) + u'\n';
}

} // namespace vorle
