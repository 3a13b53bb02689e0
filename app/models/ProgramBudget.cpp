#include "app/models/ProgramBudget.h"

namespace vorle {

ProgramBudget::ProgramBudget(TopicStore &store, const Preferences &preferences, const Clock &clock,
                             TopicListModel &program, const LocalZone &zone, QObject *parent)
    : QObject(parent), m_tracker(store, clock, zone), m_preferences(preferences), m_list(program) {
    load();
    connect(&store, &TopicStore::topicChanged, this, &ProgramBudget::follow);
    connect(&store, &TopicStore::topicsAdded, this, [this](const QList<QUuid> &ids) {
        for (const QUuid &id : ids) {
            follow(id);
        }
    });
    connect(&store, &TopicStore::topicsReset, this, &ProgramBudget::load);
    connect(&preferences, &Preferences::changed, this, [this](const QString &key) {
        if (Preferences::isKeyOf(key, &Settings::weeklyMinutes)) {
            compute();
        }
    });
}

void ProgramBudget::refresh() {
    if (m_tracker.loadNewWeek()) {
        compute();
    }
}

void ProgramBudget::load() {
    m_tracker.load();
    compute();
}

void ProgramBudget::follow(const QUuid &id) {
    if (m_tracker.loadNewWeek() || m_tracker.take(id)) {
        compute();
    }
}

void ProgramBudget::compute() {
    m_tracker.compute(m_preferences.settings().weeklyMinutes);
    m_list.setWaiting(m_tracker.waiting());
    Q_EMIT changed();
}

} // namespace vorle
