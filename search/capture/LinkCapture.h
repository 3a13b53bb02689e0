#pragma once

#include "base/Async.h"
#include "search/capture/CaptureIntake.h"
#include "search/capture/CaptureReading.h"
#include "search/capture/DailyAllowance.h"

#include <QHash>
#include <QList>
#include <QObject>
#include <QSet>

#include <variant>

namespace vorle {

/// Takes the links the user captures: each becomes a pending topic at once, is read and judged
/// like a run's, and completed in place, ready for triage. In the order they came; those that wait
/// together are judged together.
///
/// Of the links that other programs handed over so many a day are judged by themselves (see
/// DailyAllowance); the rest wait for their turn, or until they are asked for.
///
/// A link that could not be judged stays pending and says so: nothing the user gave is lost. It is
/// tried again by `retry()`, `resume()` and, from time to time, by `look()`. Where the agent
/// reaches its limit, or answers for none of several, no further link is tried: all that wait have
/// failed then.
///
/// Main thread; what it is given must outlive it, and it must outlive the work under way (see
/// `stop`).
class LinkCapture final : public QObject {
    Q_OBJECT
public:
    using Parts = CaptureReading::Parts;
    using Link = CapturedLink;

    /// Where a captured link stands.
    enum class State {
        None,      ///< not waiting: unknown, judged, or decided on
        Queued,    ///< to be read after others
        Reading,   ///< being read and judged
        Postponed, ///< to be read another day; `failureText` says so
        Failed     ///< could not be judged; `failureText` tells why
    };

    /// Why a link was not taken.
    struct Refusal {
        QString text;              ///< a French sentence
        std::optional<QUuid> held; ///< the topic that has the link already
        bool tookUp = false;       ///< which took up what was said of it
    };

    explicit LinkCapture(Parts parts, QObject *parent = nullptr);
    ~LinkCapture() override;

    /// Takes a link in and starts on it. The address may leave its scheme out ("example.org/a"),
    /// and may be any the user can reach, this machine included, unless another program handed it
    /// over. Gives the new topic's identity. What is no web address is refused; so is a link that a
    /// topic holds already, but what was said of it is kept there, and one that still waits is
    /// started on, whatever the day's allowance.
    std::variant<QUuid, Refusal> take(Link link);

    /// Takes the links in that were dropped for the user, as captureIntake() does where topics that
    /// were set aside return, and starts on them.
    QList<IntakeResult> takeDropped(const QList<Link> &links);

    /// Starts on every captured link that still waits. For the start of the application, and once
    /// what kept the judge from answering is mended.
    void resume();

    /// Looks whether there is something to start on by now: a new day, an agent that is signed in
    /// again, a failure that is some time ago (ten minutes; longer and longer, up to six hours, as
    /// long as it goes on). For every few minutes.
    void look();

    /// Starts on that one link, when it is one that waits, whatever the day's allowance.
    void ask(const QUuid &id);
    /// Starts on all that wait for another day.
    void askPostponed();

    State state(const QUuid &id) const;
    /// Why it is not judged, a French sentence; empty unless its state is Failed or Postponed.
    QString failureText(const QUuid &id) const;
    /// Starts again on a link whose state is Failed, or before its day on one that is Postponed.
    void retry(const QUuid &id);
    /// How many wait for another day.
    qsizetype postponed() const { return m_postponed.size(); }

    bool running() const { return m_running; }
    /// Ends once no link is being read and none waits for it.
    Task<> ended() { return m_work.join(); }
    /// Ends the work under way; done once `ended` is. What was not finished stays pending.
    void stop() { m_cancel.cancel(); }

Q_SIGNALS:
    void runningChanged();
    /// The topic was judged and waits in "À trier".
    void completed(const QUuid &id);
    /// It could not be judged; `text` is a French sentence. Not told again where it was tried again
    /// by itself and fails for the same reason.
    void failed(const QUuid &id, const QString &text);
    /// `state` gives another answer for it.
    void stateChanged(const QUuid &id);
    void postponedChanged();

private:
    /// Why a link is read.
    enum class Cause {
        Given,   ///< the user just gave it
        Asked,   ///< they asked for it: now, and even where its page does not answer
        ByItself ///< as it comes, within the day's allowance
    };

    void start(const QList<QUuid> &ids, Cause cause);
    void admit();
    void enqueue(const QUuid &id);
    void run();
    Task<> work();
    CaptureReading::Told told();
    void end(const QUuid &id, const std::optional<QString> &failure);
    void backOff(const AgentError *error);

    Parts m_parts;
    CaptureReading m_reading;
    DailyAllowance m_allowance;
    CancelSource m_cancel;
    QList<QUuid> m_queue;      ///< those being read first
    QSet<QUuid> m_queued;      ///< the same: thousands may be asked for at once
    QSet<QUuid> m_underWay;    ///< of the queue: being read
    QSet<QUuid> m_asked;       ///< of the queue: Cause::Asked
    QSet<QUuid> m_spending;    ///< of the queue: those that count for the day
    QSet<QUuid> m_failedToday; ///< those of that kind that failed: they keep their place in the day
    QList<QUuid> m_turn;       ///< those that wait for their day, in their order
    QSet<QUuid> m_postponed;   ///< the same
    QHash<QUuid, QString> m_failures;
    QHash<QUuid, QString> m_former;     ///< why it failed before it was tried again by itself
    QHash<QUuid, int> m_unreachable;    ///< how often its page did not answer
    int m_spent = 0;                    ///< of the day, since it was last noted
    bool m_troubled = false;            ///< a link of the batch under way failed
    std::chrono::seconds m_pause{0};    ///< after the last failure
    std::optional<QDateTime> m_nextTry; ///< not before
    bool m_running = false;
    TaskGroup m_work;
};

} // namespace vorle
