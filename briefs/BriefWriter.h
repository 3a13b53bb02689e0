#pragma once

#include "agents/Ask.h"
#include "base/Async.h"
#include "base/Clock.h"
#include "core/Brief.h"

#include <QHash>
#include <QList>
#include <QObject>
#include <QSet>
#include <QUuid>

#include <optional>

namespace vorle {

class Preferences;
class TopicStore;

/// Writes reading notes ("fiches de lecture") through the user's agent, one at a time, in the order
/// they were asked for, and stores each in its topic. Main thread only. What it is given must
/// outlive it, and the asker also a call that was under way when it went; it may go at any moment
/// but from a slot of its own signals: the call then ends and nothing more is stored.
class BriefWriter final : public QObject {
    Q_OBJECT
public:
    /// The agent's answer.
    struct Output {
        QList<Brief::Part> essentials;
        QList<Brief::Part> details;
        std::optional<QString> code; ///< a sample from a source
        std::optional<QString> forProject;
        QList<QString> unclear;
        QList<Brief::Source> sources;
        std::optional<double> minutes; ///< to read the note

        static constexpr auto jsonFields() {
            return std::tuple(
                json::field("essentials", &Output::essentials),
                json::field("details", &Output::details), json::field("code", &Output::code),
                json::field("forProject", &Output::forProject),
                json::field("unclear", &Output::unclear), json::field("sources", &Output::sources),
                json::field("minutes", &Output::minutes));
        }
    };

    /// What came with a note and is not kept in it: known until the program ends.
    struct Receipt {
        std::optional<int> minutes; ///< to read the note
        std::optional<double> costUSD;
    };

    struct Parts {
        const Preferences &preferences;
        TopicStore &store;
        Asker &asker;
        const Clock &clock;
    };

    explicit BriefWriter(Parts parts, QObject *parent = nullptr);
    ~BriefWriter() override;

    /// The topics waiting for their note, in order.
    const QList<QUuid> &queue() const { return m_queue; }
    /// Whether the queue is being worked through; true still while a stopped call ends.
    bool running() const { return m_running; }
    /// Ends once no call is under way and no topic waits for one.
    Task<> ended() { return m_work.join(); }
    std::optional<QUuid> writing() const { return m_writing; }
    /// The topics whose last attempt failed.
    QSet<QUuid> failed() const { return {m_failures.keyBegin(), m_failures.keyEnd()}; }
    /// Why, for the user, in the agent's own words; empty when it did not fail.
    QString failureText(const QUuid &id) const { return m_failures.value(id); }
    std::optional<Receipt> receipt(const QUuid &id) const;

    /// Queues the topic, and starts when nothing is being written. One that is queued or being
    /// written already is left where it is; one that failed leaves `failed`; one that has a note
    /// gets a new one, and keeps the old until then. A topic that is gone when its turn comes, or
    /// when its note does, is passed over. Where the agent reaches its limit no further call is
    /// made: every topic that waits has failed then.
    void ask(const QUuid &id);
    /// Takes the topic out of the queue, or ends the call that writes it.
    void withdraw(const QUuid &id);
    /// Withdraws every topic; done once `ended` is.
    void stop();

Q_SIGNALS:
    void queueChanged();
    void runningChanged();
    void writingChanged();
    void failedChanged();
    /// A note was stored in its topic.
    void written(const QUuid &id);

private:
    Task<> work();
    Question questionFor(const QUuid &id) const;
    void keep(const QUuid &id, const Asked<Output> &asked);
    void fail(const QUuid &id, const QString &text);
    void setWriting(std::optional<QUuid> id);
    void setRunning(bool running);

    Parts m_parts;
    QList<QUuid> m_queue;
    std::optional<QUuid> m_writing;
    bool m_running = false;
    TaskGroup m_work;
    CancelSource m_call; ///< ends the call under way
    QHash<QUuid, QString> m_failures;
    QHash<QUuid, Receipt> m_receipts;
};

/// What the detail made of an answer's "code" is called, by which a screen knows to show it as
/// code.
QString codePartTitle();

/// The note in an answer, its lists and texts held to what a screen can show: "code" becomes the
/// last of the details, only http(s) links stay, each once, and an empty part goes. Nothing when no
/// essential part is left: a note that says nothing is none.
std::optional<Brief> briefFrom(const BriefWriter::Output &output);

} // namespace vorle
