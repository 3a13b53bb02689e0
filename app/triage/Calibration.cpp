#include "app/triage/Calibration.h"

#include "base/French.h"
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

Calibration::Calibration(Preferences &preferences, TopicStore &store, const Clock &clock)
    : m_preferences(preferences), m_store(store), m_clock(clock) {}

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
        endIfOver();
    } else {
        beginAgain();
    }
}

void Calibration::beginAgain() {
    // Kept to the second, as decisions are in the topics file.
    const QDateTime now = m_clock.now();
    m_preferences.change(&Settings::calibrationStart,
                         QDateTime::fromSecsSinceEpoch(now.toSecsSinceEpoch(), Qt::UTC));
    m_preferences.change(&Settings::calibrated, false);
}

void Calibration::skip() { m_preferences.change(&Settings::calibrated, true); }

QList<TopicPtr> Calibration::decidedSinceStart() const {
    const auto &start = m_preferences.settings().calibrationStart;
    QList<TopicPtr> decided;
    if (start) {
        std::ranges::copy_if(
            m_store.topics(), std::back_inserter(decided), [&](const TopicPtr &topic) {
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

std::optional<Calibration::Answer> Calibration::answer(const QUuid &topic, Choice choice,
                                                       std::optional<int> score) {
    const TopicPtr present = m_store.topic(topic);
    const auto before = m_store.triageState(topic);
    if (!present || !before) {
        return std::nullopt;
    }
    const Answer taken{topic, *before, present->correction};
    switch (choice) {
    case Choice::Keep:
        m_store.keep(topic);
        break;
    case Choice::Later:
        m_store.postpone(topic);
        break;
    case Choice::NotForMe:
        m_store.dismiss(topic);
        break;
    }
    if (score) {
        // Reasons given earlier stay.
        const Correction former = present->correction.value_or(Correction());
        m_store.setCorrection(topic, correctionOf(*score, former.tags, former.text, m_clock.now()));
    }
    endIfOver();
    return taken;
}

void Calibration::takeBack(const Answer &answer) {
    m_store.restore(answer.topic, answer.before);
    m_store.setCorrection(answer.topic, answer.correction);
    reopen();
}

void Calibration::reopen() { m_preferences.change(&Settings::calibrated, false); }

void Calibration::endIfOver() {
    const Progress now = progress();
    if (now.answered >= now.total) {
        m_preferences.change(&Settings::calibrated, true);
    }
}

CalibrationText calibrationInvitation(qsizetype total) {
    return {French::tr("Apprends-moi tes goûts"),
            total == 1 ? French::tr("Trie un sujet et dis-moi la note que tu lui aurais donnée. "
                                    "Mes prochaines notes en tiendront compte.")
                       : French::tr("Trie %1 sujets variés et dis-moi la note que tu leur "
                                    "aurais donnée. Mes prochaines notes en tiendront compte.")
                             .arg(total)};
}

QString calibrationQuestion() { return French::tr("Qu’est-ce que tu en fais\u00A0?"); }

QString calibrationScoreQuestion() {
    return French::tr("Quelle note lui aurais-tu donnée, de 0 à 10\u00A0?");
}

QString calibrationLabel(Calibration::Choice choice) {
    switch (choice) {
    case Calibration::Choice::Keep:
        return French::tr("Garder");
    case Calibration::Choice::Later:
        return French::tr("Plus tard");
    case Calibration::Choice::NotForMe:
        break;
    }
    return French::tr("Pas pour moi");
}

QString calibrationPosition(const Calibration::Progress &progress) {
    return French::tr("%1 sur %2")
        .arg(std::min(progress.answered + 1, progress.total))
        .arg(progress.total);
}

CalibrationText calibrationEnd(qsizetype answered) {
    return {French::tr("C’est noté"),
            answered < Calibration::wanted
                ? French::tr("Il n’y a plus rien à trier pour l’instant. Tes réponses "
                             "guideront déjà la prochaine fouille.")
                : French::tr("Tes réponses guideront la prochaine fouille, et chaque tri que "
                             "tu feras ensuite affinera mes notes.")};
}

QString calibrationNothingText() {
    return French::tr("Rien à trier pour l’instant\u00A0: il me faut d’abord une fouille.");
}

QString calibrationSkippedText() {
    return French::tr("Entendu, j’apprendrai de tes tris au fil de l’eau. Tu peux le faire "
                      "plus tard, quand tu veux.");
}

} // namespace vorle
