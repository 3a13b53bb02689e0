#pragma once

#include "app/triage/DecisionHistory.h"
#include "core/Preferences.h"
#include "core/TopicStore.h"

#include <QList>

#include <optional>

namespace vorle {

/// As varied a choice of `count` topics as the candidates allow: each next one is of the tier, then
/// the subject (project or interest), then the kind that the choice, and `already`, hold least; of
/// equals, the first in the candidates' order. All of them, in that order, when they are fewer.
/// Pure, any thread.
QList<TopicPtr> variedTopics(const QList<TopicPtr> &candidates, qsizetype count,
                             const QList<TopicPtr> &already = {});

/// The first triage, guided: after the first run about ten varied topics of "À trier", each to
/// keep, to leave for later or to set aside, with the question what the user would have scored.
/// Ten decisions is what learning needs to begin.
///
/// Nothing is kept but the settings `calibrated` and `calibrationStart` and the decisions
/// themselves: a decision taken since the start counts wherever it was taken, so that it can be
/// left and gone on with at any moment. What is answered goes into the history that it is given, as
/// any decision. Main thread; what it is given must outlive it.
class Calibration {
public:
    struct Progress {
        qsizetype answered = 0;
        qsizetype total = 0; ///< 10, or fewer when there are not that many
        bool operator==(const Progress &) const = default;
    };

    static constexpr qsizetype wanted = 10;

    Calibration(Preferences &preferences, TopicStore &store, DecisionHistory &history,
                const Clock &clock);

    /// Has onboarding ask for a calibration: to be called when it ends, before `onboarded` is set,
    /// which alone would read as "calibrated long ago".
    static void expect(Preferences &preferences);

    /// Whether to propose it: neither finished nor skipped, a run has ended, and there is something
    /// to ask.
    bool isProposed() const;
    /// Begun and neither finished nor skipped.
    bool isUnderWay() const;

    /// Begins, or goes on with one that was left. One that cannot ask anything any more is over,
    /// unless nothing was answered: there was nothing to ask yet.
    void begin();
    /// Begins anew, whatever was answered.
    void beginAgain();
    /// Never proposed again, unless it is taken again.
    static void skip(Preferences &preferences);
    /// Leaves it where it is; what was decided stands, and is not taken back here any more.
    void leave();

    /// Ends it where something was answered and nothing is left to ask: decided elsewhere, say.
    void endIfOver();

    Progress progress() const;
    /// The next topic to ask about; nothing when all was asked, or before the beginning.
    TopicPtr next() const;

    /// Takes the first half of an answer: what becomes of the topic. False, and nothing changed,
    /// when there is no such topic.
    bool choose(const QUuid &topic, Outcome outcome);
    /// Takes the other half: the score, 0 to 10, that the person would have given the topic chosen
    /// last; reasons they gave earlier stay. Nothing for none. The last answer ends the
    /// calibration. Gives the app's own score of the topic, where there are both to compare.
    std::optional<int> give(std::optional<int> score);

    bool canTakeBack() const { return !m_answers.isEmpty(); }
    /// Takes the last answer back, or the half of it that was given, and goes on from there. Gives
    /// its topic; nothing where there is none to take back.
    std::optional<QUuid> takeBack();

private:
    struct Answer {
        QUuid topic;
        int steps = 0; ///< how many of the history's it took
    };

    QList<TopicPtr> decidedSinceStart() const;

    Preferences &m_preferences;
    TopicStore &m_store;
    DecisionHistory &m_history;
    const Clock &m_clock;
    QList<Answer> m_answers; // since it was begun, or gone on with, here
};

} // namespace vorle
