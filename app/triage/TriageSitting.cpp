#include "app/triage/TriageSitting.h"

#include <algorithm>

namespace vorle {

TriageSitting::TriageSitting(const DecisionHistory &history, QObject *parent)
    : QObject(parent), m_history(history) {
    connect(&history, &DecisionHistory::decided, this, [this](const QUuid &id, Outcome outcome) {
        if (outcome == Outcome::Kept || outcome == Outcome::Later ||
            outcome == Outcome::Dismissed) {
            m_touched.insert(id);
        }
    });
}

void TriageSitting::filled(const QList<QUuid> &topics) {
    if (std::ranges::none_of(topics, [this](const QUuid &id) { return m_touched.contains(id); })) {
        m_first = m_history.nextNumber();
        m_touched.clear();
    }
}

TriageSitting::Tally TriageSitting::tally() const {
    QList<SortedTopic> sorted = m_history.sorted();
    sorted.removeIf([this](const SortedTopic &each) { return each.number < m_first; });
    qsizetype first = sorted.size() - 1;
    while (first > 0 && sorted[first - 1].at.secsTo(sorted[first].at) < pause) {
        --first;
    }
    sorted.remove(0, std::max<qsizetype>(0, first));
    Tally tally;
    for (const SortedTopic &each : sorted) {
        (each.to == TopicStatus::Program   ? tally.kept
         : each.to == TopicStatus::Reserve ? tally.later
                                           : tally.dismissed)
            .append(each.id);
    }
    // A clock that was set back says nothing.
    tally.seconds =
        sorted.isEmpty() ? 0 : std::max<qint64>(0, sorted.first().at.secsTo(sorted.last().at));
    return tally;
}

} // namespace vorle
