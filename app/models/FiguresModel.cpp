#include "app/models/FiguresModel.h"

#include "app/labels/RunLabels.h"
#include "app/labels/Wording.h"
#include "app/models/ListParts.h"
#include "app/report/FigureSentences.h"
#include "app/report/ReportMarkdown.h"
#include "base/FrenchLocale.h"
#include "core/DurationText.h"
#include "core/NumberText.h"
#include "core/ScoreScale.h"

#include <QDir>
#include <QFileInfo>
#include <QSaveFile>
#include <QStandardPaths>

#include <algorithm>

namespace vorle {

namespace {

constexpr int settleMs = 200; // a run changes many topics at once
constexpr qsizetype maxRunsShown = 4;

template <class Value, class Wording>
QStringList inWords(const QList<Value> &all, Wording &&wording) {
    QStringList words;
    for (const Value &each : all) {
        words += wording(each);
    }
    return words;
}

} // namespace

FiguresModel::FiguresModel(Parts parts, const LocalZone &zone, QObject *parent)
    : QObject(parent), m_parts(parts), m_zone(zone) {
    m_later.setSingleShot(true);
    m_later.setInterval(settleMs);
    connect(&m_later, &QTimer::timeout, this, &FiguresModel::work);
    connect(&parts.store, &TopicStore::topicChanged, this, &FiguresModel::refresh);
    connect(&parts.store, &TopicStore::topicsAdded, this, &FiguresModel::refresh);
    connect(&parts.store, &TopicStore::topicsReset, this, &FiguresModel::refresh);
    connect(&parts.store, &TopicStore::historyChanged, this, &FiguresModel::refresh);
    connect(&parts.preferences, &Preferences::changed, this, &FiguresModel::refresh);
    m_period = reportPeriod(m_kind, now(), 0, QLocale::system(), m_zone);
}

/// Somebody who comes to look has it worked out anyway.
void FiguresModel::refresh() {
    if (m_active) {
        m_later.start();
    }
}

void FiguresModel::setActive(bool active) {
    if (m_active == active) {
        return;
    }
    m_active = active;
    if (active) {
        work(); // a new day may have begun, too
    } else {
        m_later.stop();
        Q_EMIT changed();
    }
}

void FiguresModel::setKind(int kind) {
    const int last = static_cast<int>(rawStrings(PeriodKind{}).size()) - 1;
    show(static_cast<PeriodKind>(std::clamp(kind, 0, last)), 0);
}

void FiguresModel::goBack() {
    if (canGoBack()) {
        show(m_kind, m_back + 1);
    }
}

void FiguresModel::goOn() {
    if (canGoOn()) {
        show(m_kind, m_back - 1);
    }
}

void FiguresModel::show(PeriodKind kind, int back) {
    m_kind = kind;
    m_back = back;
    work();
}

void FiguresModel::work() {
    m_later.stop();
    const WatchRecords records{.topics = m_parts.store.topics(),
                               .reports = m_parts.store.history(),
                               .weeklyMinutes = m_parts.preferences.settings().weeklyMinutes,
                               .reflexesOf = [this](const QUuid &id) -> std::optional<qsizetype> {
                                   const auto provenance = m_parts.provenance.of(id);
                                   return provenance ? std::optional(provenance->reflexes.size())
                                                     : std::nullopt;
                               }};
    m_first = {};
    const auto take = [this](const QDateTime &moment) {
        if (moment.isValid() && (!m_first.isValid() || moment < m_first)) {
            m_first = moment;
        }
    };
    for (const TopicPtr &topic : records.topics) {
        take(topic->foundAt);
    }
    for (const RunReport &report : records.reports) {
        take(report.date);
    }
    const QLocale locale = QLocale::system();
    m_period = reportPeriod(m_kind, now(), m_back, locale, m_zone);
    m_figures = watchFigures(records, m_period, now(), locale, m_zone);
    Q_EMIT changed();
}

QString FiguresModel::rangeText() const { return vorle::rangeText(m_period, now(), m_zone); }

QString FiguresModel::subtitle() const { return periodTitle(m_period, now()); }

QString FiguresModel::partName() const {
    switch (m_kind) {
    case PeriodKind::Week:
        return tr("Par jour");
    case PeriodKind::Month:
        return tr("Par semaine");
    case PeriodKind::Year:
        break;
    }
    return tr("Par mois");
}

bool FiguresModel::canGoBack() const { return m_first.isValid() && m_first < m_period.whole.begin; }

QVariantList FiguresModel::counts() const {
    const auto count = [](int number, const QString &one, const QString &many) {
        return FigureCount{numberText(number), number < 2 ? one : many};
    };
    return variants(
        QList<FigureCount>{count(m_figures.found.found, tr("trouvé"), tr("trouvés")),
                           count(m_figures.found.kept, tr("gardé"), tr("gardés")),
                           count(m_figures.done, tr("fait"), tr("faits")),
                           count(m_figures.found.dismissed, tr("écarté"), tr("écartés")),
                           count(m_figures.gems, tr("pépite"), tr("pépites"))});
}

QString FiguresModel::timeText() const { return durationText(m_figures.minutes); }

QString FiguresModel::timeOf() const { return budgetText(m_figures); }

QVariantList FiguresModel::parts() const {
    QList<FigurePart> parts;
    for (qsizetype i = 0; i < m_figures.parts.size(); ++i) {
        const auto &part = m_figures.parts[i];
        parts += FigurePart{
            partLabel(m_period, i, m_zone), part.found, part.kept, part.done, part.minutes,
            durationText(part.minutes)};
    }
    return variants(parts);
}

QVariantList FiguresModel::scores() const {
    QList<FigureScore> scores;
    for (const auto &score : m_figures.scores) {
        scores += FigureScore{score.kept, score.later, score.dismissed, BadgeLook::of(score.score)};
    }
    return variants(scores);
}

QVariantList FiguresModel::sources() const {
    QList<FigureSource> sources;
    for (const auto &source : m_figures.sources) {
        sources += FigureSource{shownWords(source.name), source.found, source.kept};
    }
    return variants(sources);
}

QVariantList FiguresModel::runs() const {
    QList<FigureCount> runs;
    const bool priced = m_figures.costUSD() > 0;
    for (const auto &run : m_figures.runs.last(std::min(maxRunsShown, m_figures.runs.size()))) {
        const QDate day = run.date.toTimeZone(m_zone).date();
        runs += FigureCount{priced ? costText(run.costUSD) : secondsText(run.seconds),
                            shortDay(day, day.year())};
    }
    return variants(runs);
}

QVariantList FiguresModel::steps() const {
    QList<FigureCount> steps;
    for (const StepReport &step : m_figures.steps) {
        steps +=
            FigureCount{spentText(step.calls, step.seconds, step.costUSD), stepName(step.step)};
    }
    return variants(steps);
}

int FiguresModel::partBudget() const {
    return m_kind == PeriodKind::Month ? m_figures.weeklyMinutes : 0;
}

QString FiguresModel::partBudgetText() const { return durationText(partBudget()); }

QString FiguresModel::foundSentence() const { return vorle::foundSentence(m_figures); }

QString FiguresModel::timeSentence() const { return vorle::timeSentence(m_figures); }

QString FiguresModel::scoresSentence() const { return vorle::scoresSentence(m_figures); }

QString FiguresModel::sourcesSentence() const { return vorle::sourcesSentence(m_figures); }

QString FiguresModel::runsSentence() const { return vorle::runsSentence(m_figures); }

QString FiguresModel::runsNote() const {
    return m_figures.costUSD() > 0 ? tr("Le prix que ton IA annonce, compris dans ton abonnement")
                                   : QString();
}

QString FiguresModel::learnedText() const {
    const QString reflexes = reflexesSentence(m_figures);
    return correctionsSentence(m_figures) + (reflexes.isEmpty() ? QString() : u' ' + reflexes);
}

QStringList FiguresModel::partsInWords() const {
    QStringList words;
    for (qsizetype i = 0; i < m_figures.parts.size(); ++i) {
        const auto &part = m_figures.parts[i];
        words += tr("%1\u00A0: %2, %3, %4")
                     .arg(partLabel(m_period, i, m_zone),
                          counted(part.found, tr("trouvé"), tr("trouvés")),
                          counted(part.kept, tr("gardé"), tr("gardés")),
                          counted(part.done, tr("fait"), tr("faits")));
    }
    return words;
}

QStringList FiguresModel::timesInWords() const {
    QStringList words;
    for (qsizetype i = 0; i < m_figures.parts.size(); ++i) {
        words += tr("%1\u00A0: %2")
                     .arg(partLabel(m_period, i, m_zone), durationText(m_figures.parts[i].minutes));
    }
    return words;
}

QStringList FiguresModel::scoresInWords() const {
    return inWords(m_figures.scores, [](const auto &score) {
        return tr("%1\u00A0: %2, %3 plus tard, %4")
            .arg(scoreBadge(score.score).accessibleName,
                 counted(score.kept, tr("gardé"), tr("gardés")), numberText(score.later),
                 counted(score.dismissed, tr("écarté"), tr("écartés")));
    });
}

QStringList FiguresModel::sourcesInWords() const {
    return inWords(m_figures.sources, [](const auto &source) {
        return tr("%1\u00A0: %2 sur %3")
            .arg(shownWords(source.name), counted(source.kept, tr("gardé"), tr("gardés")),
                 numberText(source.found));
    });
}

QString FiguresModel::markdown() const {
    return reportMarkdown(m_figures, m_period, now(), m_zone);
}

QString FiguresModel::freePath(const QString &extension) const {
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    if (folder.isEmpty() || !QDir().mkpath(folder)) {
        return {};
    }
    const QString stem =
        QStringLiteral("%1/bilan-vorle-%2-%3")
            .arg(folder, json::rawText(m_kind),
                 m_period.whole.begin.toTimeZone(m_zone).date().toString(Qt::ISODate));
    QString path = stem + u'.' + extension;
    for (int number = 2; QFileInfo::exists(path); ++number) {
        path = QStringLiteral("%1-%2.%3").arg(stem).arg(number).arg(extension);
    }
    return path;
}

void FiguresModel::keepMarkdown() {
    const QString path = freePath(QStringLiteral("md"));
    QSaveFile file(path);
    const QByteArray page = markdown().toUtf8();
    tellKept(path, !path.isEmpty() && file.open(QIODevice::WriteOnly) &&
                       file.write(page) == page.size() && file.commit());
}

void FiguresModel::tellKept(const QString &path, bool kept) {
    const QFileInfo file(path);
    if (!kept) {
        Q_EMIT said(path.isEmpty()
                        ? tr("Le dossier de tes documents ne s’ouvre pas.")
                        : tr("Je n’ai pas pu écrire dans «\u202F%1\u202F».").arg(file.path()));
        return;
    }
    Q_EMIT said(
        tr("Gardé dans «\u202F%1\u202F»\u00A0: %2").arg(file.dir().dirName(), file.fileName()));
}

} // namespace vorle
