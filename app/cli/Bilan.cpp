// The command that tells what the watch came to.

#include "app/cli/Handlers.h"
#include "app/cli/Requirements.h"
#include "app/labels/RunLabels.h"
#include "app/labels/Wording.h"
#include "app/report/FigureSentences.h"
#include "app/report/ReportMarkdown.h"
#include "base/French.h"
#include "core/DurationText.h"
#include "core/NumberText.h"
#include "core/Preferences.h"
#include "core/ScoreProvenanceLog.h"

#include <QTimeZone>

#include <algorithm>
#include <cmath>

namespace vorle::cli {

namespace {

constexpr int labelColumns = 18;
constexpr int barColumns = 24;

struct Line {
    QString name;
    double value = 0;
    QString text;
};

/// A line each, behind a bar as long as its share of the greatest.
QString chart(const Console &console, const QList<Line> &lines) {
    double most = 0;
    for (const Line &line : lines) {
        most = std::max(most, line.value);
    }
    QStringList out;
    for (const Line &line : lines) {
        const auto filled =
            most > 0 ? static_cast<qsizetype>(std::lround(line.value * barColumns / most)) : 0;
        const QString name = shownWords(line.name).simplified();
        out += QStringLiteral("  ") + console.plain(name.leftJustified(labelColumns, u' ', true)) +
               console.accent(QString(filled, u'█')) + QString(barColumns - filled + 2, u' ') +
               console.faint(line.text);
    }
    return out.join(u'\n');
}

QList<Line> partLines(const WatchFigures &figures, const ReportPeriod &period,
                      const QTimeZone &zone) {
    QList<Line> lines;
    for (qsizetype i = 0; i < figures.parts.size(); ++i) {
        const auto &part = figures.parts[i];
        lines += {partLabel(period, i, zone), double(part.found),
                  French::tr("%1, %2, %3")
                      .arg(counted(part.found, French::tr("trouvé"), French::tr("trouvés")),
                           counted(part.kept, French::tr("gardé"), French::tr("gardés")),
                           counted(part.done, French::tr("fait"), French::tr("faits")))};
    }
    return lines;
}

QList<Line> timeLines(const WatchFigures &figures, const ReportPeriod &period,
                      const QTimeZone &zone) {
    QList<Line> lines;
    for (qsizetype i = 0; i < figures.parts.size(); ++i) {
        const int minutes = figures.parts[i].minutes;
        lines += {partLabel(period, i, zone), double(minutes), durationText(minutes)};
    }
    return lines;
}

QList<Line> scoreLines(const WatchFigures &figures) {
    QList<Line> lines;
    for (const auto &score : figures.scores) {
        lines += {numberText(score.score), double(score.kept),
                  French::tr("%1, %2 plus tard, %3")
                      .arg(counted(score.kept, French::tr("gardé"), French::tr("gardés")),
                           numberText(score.later),
                           counted(score.dismissed, French::tr("écarté"), French::tr("écartés")))};
    }
    return lines;
}

QList<Line> sourceLines(const WatchFigures &figures) {
    QList<Line> lines;
    for (const auto &source : figures.sources) {
        lines += {source.name, double(source.kept),
                  French::tr("%1 sur %2").arg(numberText(source.kept), numberText(source.found))};
    }
    return lines;
}

QList<Line> stepLines(const WatchFigures &figures) {
    QList<Line> lines;
    for (const StepReport &step : figures.steps) {
        lines +=
            {stepName(step.step), step.seconds, spentText(step.calls, step.seconds, step.costUSD)};
    }
    return lines;
}

void printPage(const Console &console, const WatchFigures &figures, const ReportPeriod &period,
               const QDateTime &now, const QTimeZone &zone) {
    const QString counts = countsText(figures);
    QStringList blocks{console.bold(French::tr("Bilan · %1").arg(rangeText(period, now, zone))) +
                       u'\n' + counts + u'\n' + durationText(figures.minutes) + u' ' +
                       budgetText(figures)};
    const auto section = [&](const QString &sentence, const QList<Line> &lines, bool tells) {
        blocks += console.bold(console.wrapped(sentence, 0)) +
                  (tells ? u'\n' + chart(console, lines) : QString());
    };
    section(foundSentence(figures), partLines(figures, period, zone),
            figures.found.found + figures.done > 0);
    section(timeSentence(figures), timeLines(figures, period, zone), figures.minutes > 0);
    section(scoresSentence(figures), scoreLines(figures), figures.found.decided() > 0);
    section(sourcesSentence(figures), sourceLines(figures), figures.found.kept > 0);
    QString own = console.wrapped(correctionsSentence(figures), 0);
    if (const QString reflexes = reflexesSentence(figures); !reflexes.isEmpty()) {
        own += u'\n' + console.wrapped(reflexes, 0);
    }
    blocks += own;
    section(runsSentence(figures), stepLines(figures), !figures.steps.isEmpty());
    console.print(blocks.join(QStringLiteral("\n\n")));
}

PeriodKind kindOf(const Arguments &arguments) {
    const QString word = arguments.options.value(QStringLiteral("periode"));
    const auto kind = json::fromRaw<PeriodKind>(word);
    if (!word.isEmpty() && !kind) {
        throw Failure(
            French::tr("Période inconnue\u00A0: %1. Choix\u00A0: semaine, mois, annee.").arg(word),
            ExitStatus::Usage);
    }
    return kind.value_or(PeriodKind::Week);
}

} // namespace

Task<ExitStatus> bilan(Context &context, OnDemand<TopicStore> topics,
                       OnDemand<Preferences> preferences, OnDemand<ScoreProvenanceLog> provenance,
                       const Clock &clock) {
    const PeriodKind kind = kindOf(context.arguments);
    const TopicStore &store = *topics;
    requireReadable(store);
    const QDateTime now = clock.now();
    const QTimeZone zone = QTimeZone::systemTimeZone();
    const ReportPeriod period = reportPeriod(kind, now);
    const WatchFigures figures =
        watchFigures({.topics = store.topics(),
                      .reports = store.history(),
                      .weeklyMinutes = preferences->settings().weeklyMinutes,
                      .reflexesOf =
                          [&records = *provenance](const QUuid &id) {
                              const auto record = records.of(id);
                              return record ? std::optional(record->reflexes.size()) : std::nullopt;
                          }},
                     period, now);
    if (context.arguments.json()) {
        context.console.print(json::encode(figures, json::Style::Pretty));
    } else if (context.arguments.flags.contains(QStringLiteral("markdown"))) {
        context.console.print(reportMarkdown(figures, period, now).toUtf8());
    } else {
        printPage(context.console, figures, period, now, zone);
    }
    co_return ExitStatus::Done;
}

} // namespace vorle::cli
