#pragma once

#include "core/Corrections.h"
#include "core/Preferences.h"
#include "core/TopicStore.h"

#include <QList>
#include <QString>

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
/// left and gone on with at any moment. Main thread; what it is given must outlive it.
class Calibration {
public:
    enum class Choice { Keep, Later, NotForMe };

    struct Progress {
        qsizetype answered = 0;
        qsizetype total = 0; ///< 10, or fewer when there are not that many
        bool operator==(const Progress &) const = default;
    };

    /// What one answer changed, to be taken back.
    struct Answer {
        QUuid topic;
        TopicStore::TriageState before;
        std::optional<Correction> correction;
    };

    static constexpr qsizetype wanted = 10;

    Calibration(Preferences &preferences, TopicStore &store, const Clock &clock);

    /// Has onboarding ask for a calibration: to be called when it ends, before `onboarded` is set,
    /// which alone would read as "calibrated long ago".
    static void expect(Preferences &preferences);

    /// Whether to propose it: neither finished nor skipped, a run has ended, and there is something
    /// to ask.
    bool isProposed() const;
    /// Begun and neither finished nor skipped.
    bool isUnderWay() const;

    /// Begins, or goes on with one that was left. One that cannot ask anything any more is over.
    void begin();
    /// Begins anew, whatever was answered.
    void beginAgain();
    /// Never proposed again, unless it is taken again.
    void skip();

    Progress progress() const;
    /// The next topic to ask about; nothing when all was asked, or before the beginning.
    TopicPtr next() const;

    /// Takes an answer; the score is the one the user would have given. The last one ends the
    /// calibration. Nothing, and nothing changed, when there is no such topic.
    std::optional<Answer> answer(const QUuid &topic, Choice choice,
                                 std::optional<int> score = std::nullopt);
    /// Puts back what an answer changed, and goes on from there.
    void takeBack(const Answer &answer);

    // For who decides by another way, as the window does, which keeps what it did for its undo:
    /// Ends it where nothing is left to ask.
    void endIfOver();
    /// Goes on after its end: an answer was taken back.
    void reopen();

private:
    QList<TopicPtr> decidedSinceStart() const;

    Preferences &m_preferences;
    TopicStore &m_store;
    const Clock &m_clock;
};

/// What calibration says, in French.
struct CalibrationText {
    QString title;
    QString text;
};
/// What proposes it: `total` topics are going to be asked about.
CalibrationText calibrationInvitation(qsizetype total);
/// The question under a topic, and the one about its score.
QString calibrationQuestion();
QString calibrationScoreQuestion();
/// "Garder", "Plus tard", "Pas pour moi".
QString calibrationLabel(Calibration::Choice choice);
/// "3 sur 10": the place of the topic that is asked about.
QString calibrationPosition(const Calibration::Progress &progress);
/// What is said once it is over, with how many were answered; when nothing is there to ask; when
/// it was skipped.
CalibrationText calibrationEnd(qsizetype answered);
QString calibrationNothingText();
QString calibrationSkippedText();

} // namespace vorle
