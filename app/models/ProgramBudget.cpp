#include "app/models/ProgramBudget.h"

#include <QLocale>

namespace vorle {

ProgramBudget::ProgramBudget(TopicStore &store, const Preferences &preferences, const Clock &clock,
                             TopicListModel &program, QTimeZone zone, QObject *parent)
    : QObject(parent)
    , m_store(store)
    , m_preferences(preferences)
    , m_clock(clock)
    , m_list(program)
    , m_zone(std::move(zone)) {
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
    const Period week = calendarWeek(m_clock.now(), QLocale(), m_zone);
    if (week.begin != m_week.begin) {
        load();
    }
}

void ProgramBudget::load() {
    m_week = calendarWeek(m_clock.now(), QLocale(), m_zone);
    m_counted.clear();
    for (const TopicPtr &topic : m_store.topics()) {
        note(topic);
    }
    compute();
}

/// Takes a topic's present state in. Whether it counts, or counted before.
bool ProgramBudget::note(const TopicPtr &topic) {
    const qsizetype position = m_store.position(topic->id);
    const bool kept = topic->status == TopicStatus::Program;
    const bool doneNow =
        topic->status == TopicStatus::Done && topic->doneAt && m_week.contains(*topic->doneAt);
    if (kept || doneNow) {
        m_counted.insert(position, topic);
        return true;
    }
    return m_counted.remove(position) > 0;
}

void ProgramBudget::follow(const QUuid &id) {
    const Period week = calendarWeek(m_clock.now(), QLocale(), m_zone);
    if (week.begin != m_week.begin) {
        load();
    } else if (const TopicPtr topic = m_store.topic(id); topic && note(topic)) {
        compute();
    }
}

void ProgramBudget::compute() {
    m_program = weekProgram(m_counted.values(), m_preferences.settings().weeklyMinutes, m_week);
    QSet<QUuid> waiting;
    for (const TopicPtr &topic : std::as_const(m_program.waits)) {
        waiting.insert(topic->id);
    }
    m_list.setWaiting(std::move(waiting), programLineText(m_program));
    Q_EMIT changed();
}

} // namespace vorle
