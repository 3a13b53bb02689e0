#pragma once

#include "core/TopicStore.h"

#include <QDateTime>
#include <QList>
#include <QObject>
#include <QUuid>

#include <optional>
#include <variant>

namespace vorle {

/// A decision on a topic, by what it makes of it. Some that do the same to the record are told
/// apart: they are said in other words.
enum class Outcome {
    Kept,
    Later,     ///< set aside
    Postponed, ///< set aside, out of the program or once more
    Dismissed,
    Removed, ///< out of the program, back to triage
    PutBack, ///< from elsewhere, back to triage
    Done
};

/// What a step that was taken back, or taken again, came to.
struct StepResult {
    enum class What {
        Moved,       ///< the topic has another status now: `status`
        Judged,      ///< it has the verdict `worth` again, or none any more
        PutInPlace,  ///< its status stayed, its dates and counts did not
        Scored,      ///< it has the user's score `score` again, or none any more
        Noted,       ///< it has the user's note again: `hasNote`, or none any more
        MovedSince,  ///< it was moved without this history: nothing was done
        ChangedSince ///< its score or note was: nothing was done
    };
    QUuid id;
    What what = What::Moved;
    bool back = true; ///< taken back, else taken again
    TopicStatus status = TopicStatus::Inbox;
    std::optional<Worth> worth = {};
    std::optional<double> score = {}; ///< as Correction keeps it
    bool hasNote = false;
};

/// A decision that took a topic out of "À trier", and holds.
struct SortedTopic {
    QUuid id;
    TopicStatus to = TopicStatus::Program; ///< Program, Reserve or Dismissed
    QDateTime at;                          ///< not valid where the store told none
    qint64 number = 0;                     ///< of the step: later ones have higher numbers
};

/// Takes the user's decisions on topics, their scores and their notes, and takes them back in the
/// order they came: as many as were taken since it was made; and tells of each, whoever had it
/// taken. Main thread; the store outlives it.
class DecisionHistory final : public QObject {
    Q_OBJECT

public:
    explicit DecisionHistory(TopicStore &store, QObject *parent = nullptr)
        : QObject(parent), m_store(store) {}

    /// Each gives false, and keeps no step, when the store knows no such topic or refuses (see
    /// refusal()).
    bool decide(const QUuid &id, Outcome outcome);
    /// Done, with or without a verdict: a topic that is done already keeps its date.
    bool finish(const QUuid &id, std::optional<Worth> worth);
    /// A verdict; a topic that is not in the library is done with it.
    bool judge(const QUuid &id, Worth worth);
    /// The user's own note. An empty one takes it away.
    bool setNote(const QUuid &id, const QString &note);
    /// The user's own score of the topic; nothing takes it away.
    bool setCorrection(const QUuid &id, const std::optional<Correction> &correction);

    bool canUndo() const { return !m_done.isEmpty(); }
    bool canRedo() const { return !m_undone.isEmpty(); }

    /// The decisions that took topics out of "À trier" and hold, in the order they were taken: none
    /// that was taken back, and of a topic that was put back and sorted again, the last.
    QList<SortedTopic> sorted() const;
    /// The number that the next step gets.
    qint64 nextNumber() const { return m_number; }

    /// Takes the last decision back, or takes it again; nothing when there is none. Only what that
    /// step set is put back: what came to the topic by another way meanwhile stays. Where just that
    /// is no longer as the step left it, without this history, it stays and the step is dropped.
    std::optional<StepResult> undo();
    std::optional<StepResult> redo();

Q_SIGNALS:
    /// A decision was taken; the verdict where it is one.
    void decided(const QUuid &id, vorle::Outcome outcome, std::optional<vorle::Worth> verdict);
    void undone(const vorle::StepResult &result);
    void redone(const vorle::StepResult &result);
    /// There is another step to take back, or to take again.
    void stepsChanged();

private:
    using Own = std::optional<Correction>; ///< the user's own score
    using Note = std::optional<QString>;
    /// What a step sets of a topic, and nothing else of it.
    using Side = std::variant<TopicStore::TriageState, Own, Note>;
    struct Step {
        QUuid id;
        Side before;
        Side after;
        qint64 number = 0;
    };

    struct Decided {
        Outcome outcome = Outcome::Done;
        std::optional<Worth> verdict = {};
    };

    template <class Act>
    bool carryOut(const QUuid &id, const Decided &decision, Act act);
    void keepStep(const QUuid &id, Side before, Side after);
    bool isAt(const QUuid &id, const Side &side) const;
    bool put(const QUuid &id, const Side &side);
    std::optional<StepResult> step(QList<Step> &from, QList<Step> &to, bool back);

    TopicStore &m_store;
    QList<Step> m_done;
    QList<Step> m_undone;
    qint64 m_number = 0;
};

} // namespace vorle
