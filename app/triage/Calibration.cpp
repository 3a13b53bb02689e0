#include "app/triage/Calibration.h"

#include "core/Corrections.h"
#include "core/ScoreScale.h"

#include <QHash>

#include <algorithm>
#include <tuple>

namespace vorle {

namespace {

/// What a choice holds already, of each trait.
class Spread {
public:
    void count(const Topic &topic) {
        ++m_tiers[tierOf(topic)];
        ++m_subjects[subject(topic)];
        ++m_kinds[topic.kind.value_or(QString())];
    }
    /// The smaller, the more a topic would add to it.
    std::tuple<int, int, int> familiarity(const Topic &topic) const {
        return {m_tiers.value(tierOf(topic)), m_subjects.value(subject(topic)),
                m_kinds.value(topic.kind.value_or(QString()))};
    }

private:
    static QString subject(const Topic &topic) {
        return topic.project ? u'p' + *topic.project : u'i' + topic.interest.value_or(QString());
    }

    QHash<Tier, int> m_tiers;
    QHash<QString, int> m_subjects;
    QHash<QString, int> m_kinds;
};

bool isDecided(const Topic &topic) {
    return topic.status != TopicStatus::Pending && topic.status != TopicStatus::Inbox;
}

} // namespace

QList<TopicPtr> variedTopics(const QList<TopicPtr> &candidates, qsizetype count,
                             const QList<TopicPtr> &already) {
    Spread spread;
    for (const TopicPtr &topic : already) {
        spread.count(*topic);
    }
    QList<TopicPtr> left = candidates;
    QList<TopicPtr> chosen;
    while (chosen.size() < count && !left.isEmpty()) {
        const auto next = std::ranges::min_element(
            left, {}, [&](const TopicPtr &topic) { return spread.familiarity(*topic); });
        spread.count(**next);
        chosen.append(*next);
        left.erase(next);
    }
    return chosen;
}

Calibration::Calibration(Preferences &preferences, TopicStore &store, DecisionHistory &history,
                         const Clock &clock)
    : m_preferences(preferences), m_store(store), m_history(history), m_clock(clock) {}

void Calibration::expect(Preferences &preferences) {
    preferences.change(&Settings::calibrated, false);
}

bool Calibration::isProposed() const {
    const Settings &settings = m_preferences.settings();
    if (settings.calibrated || !settings.lastSearch) {
        return false;
    }
    const Progress now = progress();
    return now.answered < now.total;
}

bool Calibration::isUnderWay() const {
    return !m_preferences.settings().calibrated && m_preferences.settings().calibrationStart;
}

void Calibration::begin() {
    if (isUnderWay()) {
        leave();
    } else {
        beginAgain();
    }
}

void Calibration::beginAgain() {
    m_answers.clear();
    // Kept to the second, as decisions are in the topics file.
    const QDateTime now = m_clock.now();
    m_preferences.change(&Settings::calibrationStart,
                         QDateTime::fromSecsSinceEpoch(now.toSecsSinceEpoch(), Qt::UTC));
    m_preferences.change(&Settings::calibrated, false);
}

void Calibration::skip(Preferences &preferences) {
    preferences.change(&Settings::calibrated, true);
}

QList<TopicPtr> Calibration::decidedSinceStart() const {
    const auto &start = m_preferences.settings().calibrationStart;
    QList<TopicPtr> decided;
    if (start) {
        const QList<TopicPtr> all = m_store.topics();
        std::ranges::copy_if(all, std::back_inserter(decided), [&](const TopicPtr &topic) {
            return isDecided(*topic) && topic->triagedAt && *topic->triagedAt >= *start;
        });
    }
    return decided;
}

Calibration::Progress Calibration::progress() const {
    const qsizetype answered = std::min(wanted, decidedSinceStart().size());
    return {answered, std::min(wanted, answered + m_store.topics(TopicStatus::Inbox).size())};
}

TopicPtr Calibration::next() const {
    const QList<TopicPtr> decided = decidedSinceStart();
    if (!isUnderWay() || decided.size() >= wanted) {
        return nullptr;
    }
    return variedTopics(m_store.topics(TopicStatus::Inbox), 1, decided).value(0);
}

bool Calibration::choose(const QUuid &topic, Outcome outcome) {
    if (!m_history.decide(topic, outcome)) {
        return false;
    }
    m_answers.append({topic, 1});
    return true;
}

std::optional<int> Calibration::give(std::optional<int> score) {
    const TopicPtr topic = m_answers.isEmpty() ? nullptr : m_store.topic(m_answers.last().topic);
    std::optional<int> judged;
    if (topic && score) {
        // Reasons given earlier stay.
        const Correction former = topic->correction.value_or(Correction());
        if (m_history.setCorrection(
                topic->id, correctionOf(*score, former.tags, former.text, m_clock.now()))) {
            ++m_answers.last().steps;
        }
        judged = judgedScore(*topic);
    }
    endIfOver();
    return judged;
}

std::optional<QUuid> Calibration::takeBack() {
    if (m_answers.isEmpty()) {
        return std::nullopt;
    }
    const Answer answer = m_answers.takeLast();
    for (int step = 0; step < answer.steps; ++step) {
        m_history.undo();
    }
    m_preferences.change(&Settings::calibrated, false);
    return answer.topic;
}

void Calibration::leave() {
    endIfOver();
    m_answers.clear();
}

void Calibration::endIfOver() {
    const Progress now = progress();
    if (now.answered > 0 && now.answered >= now.total) {
        m_preferences.change(&Settings::calibrated, true);
    }
}

} // namespace vorle
