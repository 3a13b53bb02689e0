#include "app/report/WatchFigures.h"

#include "base/French.h"
#include "core/Corrections.h"
#include "core/WeekProgram.h"

#include <QMap>

#include <algorithm>
#include <cmath>
#include <numeric>

namespace vorle {

namespace {

using Cohort = WatchFigures::Cohort;
using From = WatchFigures::From;

constexpr int weekDays = 7;
constexpr int minutesAWeek = 10'080;
constexpr qsizetype maxSources = 6;
/// From this score on, what the app found is meant to be kept.
constexpr int goodScore = 6;

void count(Cohort &cohort, TopicStatus status) {
    ++cohort.found;
    cohort.kept += status == TopicStatus::Program || status == TopicStatus::Done ? 1 : 0;
    cohort.later += status == TopicStatus::Reserve ? 1 : 0;
    cohort.dismissed += status == TopicStatus::Dismissed ? 1 : 0;
}

From fromOf(const Topic &topic) {
    switch (topic.origin.value_or(Origin::List)) {
    case Origin::Capture:
        return From::Captures;
    case Origin::Surface:
        return From::Sites;
    case Origin::Stack:
        return From::Project;
    case Origin::List:
    case Origin::Suggestion:
        break;
    }
    return From::Topics;
}

QString sourceName(From from, const Topic &topic) {
    switch (from) {
    case From::Captures:
        return French::tr("Capturés par toi");
    case From::Sites:
        return French::tr("Tes sites");
    case From::Project: {
        const QString project = topic.project.value_or(QString()).simplified();
        return project.isEmpty() ? French::tr("Tes projets") : project;
    }
    case From::Topics:
        return French::tr("Tes sujets");
    case From::Others:
        break;
    }
    return French::tr("Autres");
}

double keptShare(const Cohort &cohort) {
    return cohort.found > 0 ? double(cohort.kept) / cohort.found : 0;
}

/// Best first, the user's own links last; past six the projects with the fewest stand together.
QList<WatchFigures::Source> ranked(QList<WatchFigures::Source> sources) {
    if (sources.size() > maxSources) {
        std::stable_sort(sources.begin(), sources.end(), [](const auto &a, const auto &b) {
            const auto rank = [](const auto &source) {
                return std::pair(source.from == From::Project, -source.found);
            };
            return rank(a) < rank(b);
        });
        WatchFigures::Source others;
        others.from = From::Others;
        others.name = French::tr("Autres");
        while (sources.size() >= maxSources) {
            const auto last = sources.takeLast();
            others.found += last.found;
            others.kept += last.kept;
            others.later += last.later;
            others.dismissed += last.dismissed;
        }
        sources += others;
    }
    const auto rank = [](From from) {
        return from == From::Captures ? 2 : from == From::Others ? 1 : 0;
    };
    std::stable_sort(sources.begin(), sources.end(), [&](const auto &a, const auto &b) {
        return std::tuple(rank(a.from), -keptShare(a), -a.kept) <
               std::tuple(rank(b.from), -keptShare(b), -b.kept);
    });
    return sources;
}

class Counting {
public:
    Counting(const WatchRecords &records, const ReportPeriod &period, const QDateTime &now,
             const QLocale &locale, const QTimeZone &zone)
        : m_records(records), m_period(period), m_now(now), m_locale(locale), m_zone(zone) {
        m_figures.kind = period.kind;
        m_figures.begin = period.whole.begin;
        m_figures.end = period.whole.end;
        m_figures.present = period.whole.contains(now);
        m_figures.weeklyMinutes = std::max(0, records.weeklyMinutes);
        for (const Period &part : period.parts) {
            WatchFigures::Part each;
            each.begin = part.begin;
            m_figures.parts += each;
        }
    }

    WatchFigures counted() {
        for (const TopicPtr &topic : m_records.topics) {
            if (topic->foundAt.isValid() && topic->status != TopicStatus::Pending) {
                m_first = m_first.isValid() ? std::min(m_first, topic->foundAt) : topic->foundAt;
                countFound(*topic);
            }
            countDone(*topic);
            countCorrection(*topic);
        }
        for (auto score = m_scores.cbegin(); score != m_scores.cend(); ++score) {
            if (score->decided() > 0) {
                m_figures.scores += *score;
            }
        }
        m_figures.sources = ranked(m_sources.values());
        concludeCorrections();
        countWeeks();
        countRuns();
        return m_figures;
    }

private:
    void countFound(const Topic &topic) {
        const qsizetype part = m_period.partOf(topic.foundAt);
        if (part < 0) {
            return;
        }
        count(m_figures.found, topic.status);
        count(m_figures.parts[part], topic.status);
        const From from = fromOf(topic);
        const QString name = sourceName(from, topic);
        auto &source = m_sources[{static_cast<int>(from), name}];
        source.from = from;
        source.name = name;
        count(source, topic.status);
        if (const auto score = judgedScore(topic)) {
            auto &column = m_scores[*score];
            column.score = *score;
            count(column, topic.status);
            countAgreement(topic, *score);
        }
    }

    void countAgreement(const Topic &topic, int score) {
        const bool kept = topic.status == TopicStatus::Program || topic.status == TopicStatus::Done;
        const auto reflexes = m_records.reflexesOf ? m_records.reflexesOf(topic.id) : std::nullopt;
        if (!reflexes || (!kept && topic.status != TopicStatus::Dismissed)) {
            return;
        }
        auto &agreement = *reflexes > 0 ? m_figures.withReflexes : m_figures.withoutReflexes;
        ++agreement.of;
        agreement.right += kept == (score >= goodScore) ? 1 : 0;
    }

    void countDone(const Topic &topic) {
        if (topic.status != TopicStatus::Done || !topic.doneAt) {
            return;
        }
        const int minutes = std::clamp(topic.minutes, 0, minutesAWeek);
        m_doneByDay[topic.doneAt->toTimeZone(m_zone).date()] += minutes;
        const qsizetype part = m_period.partOf(*topic.doneAt);
        if (part < 0) {
            return;
        }
        ++m_figures.done;
        ++m_figures.parts[part].done;
        m_figures.minutes += minutes;
        m_figures.parts[part].minutes += minutes;
        m_figures.gems += topic.worth == Worth::Gem ? 1 : 0;
        m_figures.useful += topic.worth == Worth::Useful ? 1 : 0;
        m_figures.meh += topic.worth == Worth::Meh ? 1 : 0;
    }

    void countCorrection(const Topic &topic) {
        const auto judged = judgedScore(topic);
        if (!topic.correction || !judged || !m_period.whole.contains(topic.correction->at)) {
            return;
        }
        const double gap = topic.correction->score - *judged;
        m_figures.changed.up += gap > 0 ? 1 : 0;
        m_figures.changed.down += gap < 0 ? 1 : 0;
        m_gaps += std::abs(gap);
        for (const QString &reason : topic.correction->tags) {
            ++m_reasons[reason];
        }
    }

    void concludeCorrections() {
        const int changed = m_figures.changed.up + m_figures.changed.down;
        if (changed > 0) {
            m_figures.changed.gap = m_gaps / changed;
        }
        int most = 0;
        for (const QString &reason : correctionReasons()) {
            if (m_reasons.value(reason) > most) {
                most = m_reasons.value(reason);
                m_figures.changed.reason = reason;
            }
        }
    }

    /// The calendar weeks of the period, from the watch's first topic on: before it, no time was
    /// given to anything.
    void countWeeks() {
        if (!m_first.isValid()) {
            return;
        }
        for (const Period &part : m_period.parts) {
            m_figures.partsBegun += part.begin <= m_now && part.end > m_first ? 1 : 0;
        }
        const QDateTime from = std::max(m_period.whole.begin, m_first);
        const QDateTime until = std::min(m_period.whole.end, m_now);
        QDate week = calendarWeek(from, m_locale, m_zone).begin.toTimeZone(m_zone).date();
        while (week.startOfDay(m_zone) < until) {
            int minutes = 0;
            for (int day = 0; day < weekDays; ++day) {
                minutes += m_doneByDay.value(week.addDays(day));
            }
            ++m_figures.weeks;
            m_figures.weeksHeld +=
                m_figures.weeklyMinutes > 0 && minutes >= m_figures.weeklyMinutes ? 1 : 0;
            week = week.addDays(weekDays);
        }
        m_figures.minutesLeft = weekProgram(m_records.topics, m_figures.weeklyMinutes,
                                            calendarWeek(m_now, m_locale, m_zone))
                                    .left;
    }

    void countRuns() {
        QMap<RunStep, StepReport> steps;
        for (const RunReport &report : m_records.reports) {
            if (!report.hasBegun() || !m_period.whole.contains(report.date)) {
                continue;
            }
            WatchFigures::Run run{report.date, report.added, 0, report.seconds, report.costUSD};
            for (const StepReport &each : report.steps.value_or(QList<StepReport>())) {
                StepReport &step = steps[each.step];
                step.step = each.step;
                step.calls += each.calls;
                step.failed += each.failed;
                step.seconds += each.seconds;
                step.costUSD += each.costUSD;
                run.calls += each.calls;
            }
            m_figures.failedRuns += report.failed ? 1 : 0;
            m_figures.stoppedRuns += report.cancelled ? 1 : 0;
            m_figures.runs += run;
        }
        std::stable_sort(m_figures.runs.begin(), m_figures.runs.end(),
                         [](const auto &a, const auto &b) { return a.date < b.date; });
        m_figures.steps = steps.values();
    }

    const WatchRecords &m_records;
    const ReportPeriod &m_period;
    QDateTime m_now;
    QLocale m_locale;
    QTimeZone m_zone;
    WatchFigures m_figures;
    QDateTime m_first; // when the watch found its first topic
    QMap<int, WatchFigures::Score> m_scores;
    QMap<std::pair<int, QString>, WatchFigures::Source> m_sources;
    QHash<QDate, int> m_doneByDay; // minutes
    double m_gaps = 0;
    QHash<QString, int> m_reasons;
};

template <class Value>
Value total(const QList<WatchFigures::Run> &runs, Value WatchFigures::Run::*member) {
    return std::accumulate(
        runs.begin(), runs.end(), Value{},
        [&](Value sum, const WatchFigures::Run &run) { return sum + run.*member; });
}

} // namespace

double WatchFigures::costUSD() const { return total(runs, &Run::costUSD); }

double WatchFigures::seconds() const { return total(runs, &Run::seconds); }

int WatchFigures::calls() const { return total(runs, &Run::calls); }

WatchFigures watchFigures(const WatchRecords &records, const ReportPeriod &period,
                          const QDateTime &now, const QLocale &locale, const QTimeZone &zone) {
    return Counting(records, period, now, locale, zone).counted();
}

} // namespace vorle
