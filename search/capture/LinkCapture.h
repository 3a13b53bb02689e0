#pragma once

#include "agents/Ask.h"
#include "base/Async.h"
#include "base/Clock.h"
#include "core/ScoreProvenanceLog.h"
#include "core/TopicStore.h"

#include <QHash>
#include <QList>
#include <QObject>

#include <variant>

namespace vorle {

class PageReader;
class Preferences;
class SourceImage;

/// Takes the links the user captures: each becomes a pending topic at once, is read and judged
/// like a run's, and completed in place, ready for triage. One at a time, in the order they came.
///
/// Where the agent reaches its limit no further link is tried: all that wait have failed then.
///
/// A link that could not be judged stays pending and says so, until it is tried again by `retry()`
/// or `resume()`: nothing the user gave is lost. Main thread; what it is given must outlive it, and
/// it must outlive the work under way (see `stop`).
class LinkCapture final : public QObject {
    Q_OBJECT
public:
    struct Parts {
        const Preferences &preferences;
        TopicStore &store;
        ScoreProvenanceLog &provenance;
        Asker &asker;
        PageReader &reader;
        SourceImage &images;
        const Clock &clock;
    };

    struct Link {
        QString url;
        QString title; ///< as the user or the sharing app has it; may be empty
        QString note;
        std::optional<QString> project;
    };

    /// Where a captured link stands.
    enum class State {
        None,    ///< not waiting: unknown, judged, or decided on
        Queued,  ///< to be read after others
        Reading, ///< being read and judged
        Failed   ///< could not be judged; `failureText` tells why
    };

    /// Why a link was not taken.
    struct Refusal {
        QString text;              ///< a French sentence
        std::optional<QUuid> held; ///< the topic that has the link already
    };

    explicit LinkCapture(Parts parts, QObject *parent = nullptr);
    ~LinkCapture() override;

    /// Takes a link in and starts on it. The address may leave its scheme out ("example.org/a"),
    /// and may be any the user can reach, this machine included. Gives the new topic's identity; a
    /// link that a topic holds already, or that is no web address, is refused.
    std::variant<QUuid, Refusal> take(Link link);

    /// Starts on every captured link that still waits. For the start of the application, and once
    /// what kept the judge from answering is mended.
    void resume();

    /// Starts on that one link, when it is one that waits.
    void ask(const QUuid &id);

    State state(const QUuid &id) const;
    /// Why it could not be judged, a French sentence; empty unless its state is Failed.
    QString failureText(const QUuid &id) const;
    /// Starts again on a link whose state is Failed.
    void retry(const QUuid &id);

    bool running() const { return m_running; }
    /// Ends once no link is being read and none waits for it.
    Task<> ended() { return m_work.join(); }
    /// Ends the work under way; done once `ended` is. What was not finished stays pending.
    void stop() { m_cancel.cancel(); }

Q_SIGNALS:
    void runningChanged();
    /// The topic was judged and waits in "À trier".
    void completed(const QUuid &id);
    /// It could not be judged; `text` is a French sentence.
    void failed(const QUuid &id, const QString &text);
    /// `state` gives another answer for it.
    void stateChanged(const QUuid &id);

private:
    void start(const QUuid &id);
    Task<> work();
    Task<> complete(QUuid id);
    void end(const QUuid &id, const std::optional<QString> &failure);

    Parts m_parts;
    CancelSource m_cancel;
    QList<QUuid> m_queue; ///< the one being read first
    QHash<QUuid, QString> m_failures;
    bool m_running = false;
    TaskGroup m_work;
};

} // namespace vorle
