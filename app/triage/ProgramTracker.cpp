#include "app/triage/ProgramTracker.h"

#include "app/triage/SectionOrder.h"
#include "core/TopicOrder.h"

#include <QLocale>

#include <algorithm>
#include <utility>

namespace vorle {

Period ProgramTracker::thisWeek() const {
    return calendarWeek(m_clock.now(), QLocale::system(), m_zone);
}

void ProgramTracker::load() {
    m_week = thisWeek();
    m_counted.clear();
    m_kept.clear();
    for (const QList<TopicPtr> all = m_store.topics(); const TopicPtr &topic : all) {
        if (counts(*topic)) {
            m_counted.insert(topic->id, topic);
            if (topic->status == TopicStatus::Program) {
                m_kept.append(topic);
            }
        }
    }
    m_kept = ordered(std::move(m_kept), programOrder);
}

bool ProgramTracker::loadNewWeek() {
    const bool another = thisWeek().begin != m_week.begin;
    if (another) {
        load();
    }
    return another;
}

bool ProgramTracker::counts(const Topic &topic) const {
    return topic.status == TopicStatus::Program ||
           (topic.status == TopicStatus::Done && topic.doneAt && m_week.contains(*topic.doneAt));
}

/// In the program's order, as it is before any topic is told to wait.
qsizetype ProgramTracker::indexOf(const TopicPtr &topic) const {
    const auto rank = [this](const TopicPtr &kept) {
        return rankIn(TopicSection::Program, {.topic = kept}, m_store.position(kept->id));
    };
    return std::ranges::lower_bound(m_kept, rank(topic), {}, rank) - m_kept.begin();
}

bool ProgramTracker::take(const QUuid &id) {
    const TopicPtr topic = m_store.topic(id);
    if (!topic) {
        return false;
    }
    const TopicPtr old = m_counted.take(id);
    if (old && old->status == TopicStatus::Program) {
        m_kept.removeAt(indexOf(old));
    }
    if (!counts(*topic)) {
        return old != nullptr;
    }
    m_counted.insert(id, topic);
    if (topic->status == TopicStatus::Program) {
        m_kept.insert(indexOf(topic), topic);
    }
    return true;
}

void ProgramTracker::compute(int weeklyMinutes) {
    // In its order already, the program is not sorted again.
    QList<TopicPtr> topics = m_kept;
    for (const TopicPtr &topic : std::as_const(m_counted)) {
        if (topic->status == TopicStatus::Done) {
            topics.append(topic);
        }
    }
    m_program = weekProgram(topics, weeklyMinutes, m_week);
}

QSet<QUuid> ProgramTracker::waiting() const {
    QSet<QUuid> waiting;
    for (const TopicPtr &topic : m_program.waits) {
        waiting.insert(topic->id);
    }
    return waiting;
}

} // namespace vorle
