#pragma once

#include "base/LocalZone.h"
#include "core/TopicStore.h"
#include "core/WeekProgram.h"

#include <QHash>
#include <QList>
#include <QSet>

namespace vorle {

/// The week's program (see WeekProgram), kept up to date topic by topic: it looks at kept topics
/// and those done this week alone, so that a decision costs as much as the program is long. Main
/// thread; the store and the clock outlive it.
class ProgramTracker {
public:
    ProgramTracker(const TopicStore &store, const Clock &clock, const LocalZone &zone = {})
        : m_store(store), m_clock(clock), m_zone(zone) {}

    /// Looks at all topics, for the week that it is now.
    void load();
    /// The same, once another week has begun. Whether it has.
    bool loadNewWeek();
    /// Takes a topic's present state in. Whether it counts, or counted before.
    bool take(const QUuid &id);
    /// Holds what it has against that many minutes.
    void compute(int weeklyMinutes);

    /// As it was last computed.
    const WeekProgram &program() const { return m_program; }
    /// The topics below the line.
    QSet<QUuid> waiting() const;

private:
    Period thisWeek() const;
    bool counts(const Topic &topic) const;
    qsizetype indexOf(const TopicPtr &topic) const;

    const TopicStore &m_store;
    const Clock &m_clock;
    LocalZone m_zone;
    Period m_week;
    QList<TopicPtr> m_kept;           // in the program's order
    QHash<QUuid, TopicPtr> m_counted; // these again, and what was done this week
    WeekProgram m_program;
};

} // namespace vorle
