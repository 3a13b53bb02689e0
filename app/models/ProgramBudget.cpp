#include "app/models/ProgramBudget.h"

#include <QLocale>

#include <algorithm>

namespace vorle {

ProgramBudget::ProgramBudget(TopicStore &store, const Preferences &preferences, const Clock &clock,
                             TopicListModel &program, const LocalZone &zone, QObject *parent)
    : QObject(parent)
    , m_store(store)
    , m_preferences(preferences)
    , m_clock(clock)
    , m_list(program)
    , m_zone(zone) {
    load();
    connect(&store, &TopicStore::topicChanged, this, &ProgramBudget::follow);
    connect(&store, &TopicStore::topicsAdded, this, [this](const QList<QUuid> &ids) {
        for (const QUuid &id : ids) {
            follow(id);
        }
    });
    connect(&store, &TopicStore::topicsReset, this, &ProgramBudget::load);
    connect(&preferences, &Preferences::changed, this, [this](const QString &key) {
        if (key == u"weeklyMinutes") {
            compute();
        }
    });
}

void ProgramBudget::refresh() {
    const Period week = calendarWeek(m_clock.now(), QLocale::system(), m_zone);
    if (week.begin != m_week.begin) {
        load();
    }
}

void ProgramBudget::load() {
    m_week = calendarWeek(m_clock.now(), QLocale::system(), m_zone);
    m_counted.clear();
    m_kept.clear();
    for (const TopicPtr &topic : m_store.topics()) {
        if (counts(*topic)) {
            m_counted.insert(topic->id, topic);
            if (topic->status == TopicStatus::Program) {
                m_kept.append(topic);
            }
        }
    }
    m_kept = ordered(std::move(m_kept), programOrder);
    compute();
}

bool ProgramBudget::counts(const Topic &topic) const {
    return topic.status == TopicStatus::Program ||
           (topic.status == TopicStatus::Done && topic.doneAt && m_week.contains(*topic.doneAt));
}

/// The program's order, as it is before any topic is told to wait.
bool ProgramBudget::before(const TopicPtr &a, const TopicPtr &b) const {
    return standsBefore(TopicSection::Program, {.topic = a}, {.topic = b}, m_store);
}

/// Takes a topic's present state in. Whether it counts, or counted before.
bool ProgramBudget::note(const TopicPtr &topic) {
    const auto placeOf = [this](const TopicPtr &which) {
        return std::ranges::lower_bound(
            m_kept, which, [this](const TopicPtr &a, const TopicPtr &b) { return before(a, b); });
    };
    const TopicPtr old = m_counted.take(topic->id);
    if (old && old->status == TopicStatus::Program) {
        m_kept.erase(placeOf(old));
    }
    if (!counts(*topic)) {
        return old != nullptr;
    }
    m_counted.insert(topic->id, topic);
    if (topic->status == TopicStatus::Program) {
        m_kept.insert(placeOf(topic), topic);
    }
    return true;
}

void ProgramBudget::follow(const QUuid &id) {
    const Period week = calendarWeek(m_clock.now(), QLocale::system(), m_zone);
    if (week.begin != m_week.begin) {
        load();
    } else if (const TopicPtr topic = m_store.topic(id); topic && note(topic)) {
        compute();
    }
}

void ProgramBudget::compute() {
    // In its order already, the program is not sorted again.
    QList<TopicPtr> topics = m_kept;
    for (const TopicPtr &topic : std::as_const(m_counted)) {
        if (topic->status == TopicStatus::Done) {
            topics.append(topic);
        }
    }
    m_program = weekProgram(topics, m_preferences.settings().weeklyMinutes, m_week);
    QSet<QUuid> waiting;
    for (const TopicPtr &topic : std::as_const(m_program.waits)) {
        waiting.insert(topic->id);
    }
    m_list.setWaiting(std::move(waiting));
    Q_EMIT changed();
}

} // namespace vorle
