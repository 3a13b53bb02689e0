#include "core/DemoPast.h"

#include "core/TopicOrder.h"

#include <algorithm>
#include <utility>

namespace vorle {

namespace {

constexpr int daysAWeek = 7;
constexpr qint64 minute = 60;

/// Moves what the past tells from its own present week to the one around now.
class Shift {
public:
    Shift(const QDateTime &pastWeek, const QDateTime &now, const QLocale &locale,
          const QTimeZone &zone)
        : m_week(calendarWeek(now, locale, zone).begin)
        , m_now(now)
        , m_latest(before(60 * minute))
        , m_zone(zone) {
        const QDate begin = m_week.toTimeZone(zone).date();
        // Weeks begin on a Saturday or a Sunday elsewhere: their Monday comes a little later.
        const QDate monday =
            begin.addDays((daysAWeek + Qt::Monday - begin.dayOfWeek()) % daysAWeek);
        m_days = pastWeek.date().daysTo(monday);
    }

    QDateTime before(qint64 seconds) const { return std::max(m_week, m_now.addSecs(-seconds)); }

    void apply(QDateTime &moment) const {
        const QDateTime moved(moment.date().addDays(m_days), moment.time(), m_zone);
        moment = std::min(moved.toUTC(), m_latest);
    }
    void apply(std::optional<QDateTime> &moment) const {
        if (moment) {
            apply(*moment);
        }
    }
    /// A day as topics carry it: "2026-11-16".
    void apply(std::optional<QString> &day) const {
        if (day) {
            day = QDate::fromString(*day, Qt::ISODate).addDays(m_days).toString(Qt::ISODate);
        }
    }
    void apply(Topic &topic) const {
        apply(topic.foundAt);
        apply(topic.triagedAt);
        apply(topic.doneAt);
        apply(topic.publishedOn);
        if (topic.urgency) {
            apply(topic.urgency->date);
        }
        if (topic.correction) {
            apply(topic.correction->at);
        }
    }

private:
    QDateTime m_week; ///< where the present one begins
    QDateTime m_now;
    QDateTime m_latest;
    QTimeZone m_zone;
    qint64 m_days = 0;
};

/// Tells of the run, and of the first place it searched, that they brought these.
void bring(RunReport &run, const QList<Topic> &topics) {
    for (const Topic &topic : topics) {
        run.topicIds += topic.id;
    }
    run.added = static_cast<int>(topics.size());
    if (!run.scopes.isEmpty()) {
        run.scopes.first().yield = Yield{.topicIds = run.topicIds, .added = run.added};
    }
}

/// Gives it the pictures of its sources, as a run would have found them.
void picture(Topic &topic, const QList<Picture> &pictures) {
    for (const TopicSource &source : topic.sources) {
        for (const Picture &each : pictures) {
            if (each.url == source.url) {
                topic.gallery += each;
            }
        }
    }
}

} // namespace

DemoPast demoPast(const QByteArray &data, const QList<Topic> &waiting, const QDateTime &now,
                  const QLocale &locale, const QTimeZone &zone) {
    auto past = json::decode<DemoPast>(data);
    const Shift shift(past.week, now, locale, zone);
    shift.apply(past.week);
    for (RunReport &run : past.runs) {
        shift.apply(run.date);
    }
    for (Topic &topic : past.topics) {
        shift.apply(topic);
    }
    for (ScoreProvenance &each : past.provenance) {
        shift.apply(each.at);
    }
    if (!past.runs.isEmpty()) {
        past.runs.last().date = shift.before(10 * minute);
        bring(past.runs.last(), waiting);
    }
    past.topics += waiting;
    for (Topic &topic : past.topics) {
        picture(topic, past.pictures);
    }
    return past;
}

} // namespace vorle
