#pragma once

#include "core/Topic.h"
#include "storage/DurableFile.h"

#include <QByteArray>
#include <QList>
#include <QString>

#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <system_error>
#include <thread>

namespace vorle {

/// A topic as the store holds it: never changed, with its encoded bytes kept beside it so that a
/// save encodes the changed topics alone.
class StoredTopic final : public Topic {
public:
    explicit StoredTopic(Topic topic) : Topic(std::move(topic)) {}

private:
    friend class TopicWriter;
    mutable QByteArray m_encoded; // the writer thread's alone
};

/// Writes the topics file from a thread of its own (from the caller's where none can be started).
/// While one save runs, at most one more waits: the newest. Every member is called from one thread,
/// the store's.
class TopicWriter {
public:
    using Snapshot = QList<TopicPtr>; ///< of StoredTopics
    using Outcome = std::error_code;

    /// `aside`, when given, is where the file's present bytes are kept before the first save.
    /// `finished` is called on the writer thread after each save, with what went wrong if anything
    /// did, and with the save's number.
    TopicWriter(QString file, std::optional<QString> aside,
                std::function<void(Outcome, quint64)> finished);
    TopicWriter(const TopicWriter &) = delete;
    TopicWriter &operator=(const TopicWriter &) = delete;
    /// Finishes the saves asked for.
    ~TopicWriter();

    /// Asks for a save and returns at once. Saves are numbered from 1 on, in this order; one that a
    /// newer one overtakes is never written.
    void submit(Snapshot topics);
    /// The number of the last save asked for; 0 before the first.
    quint64 asked() const { return m_asked; }
    /// Asks for what a save would encode to be encoded, unless a save waits already.
    void prepare(Snapshot topics);
    /// Waits until no save runs or waits. Gives the outcome of the last one.
    Outcome wait();
    /// The outcome of the last save that ended; no error before the first.
    Outcome lastOutcome() const;

private:
    struct Job {
        Snapshot topics;
        quint64 number = 0; // 0: is not written, only encoded
    };

    void ask(Job job);
    void run();
    /// Does the job that waits, with the lock let go meanwhile.
    void workOnce(std::unique_lock<std::mutex> &lock);
    Outcome write(const Snapshot &topics, std::optional<FormerFile> &former);
    void encodeAll(const Snapshot &topics);
    const QByteArray &encoded(const TopicPtr &topic);

    const QString m_file;
    std::optional<QString> m_aside; // the writer thread's alone
    QByteArray m_scratch;           // the same
    const std::function<void(Outcome, quint64)> m_finished;
    quint64 m_asked = 0; // the caller's thread alone

    mutable std::mutex m_mutex; // guards what follows
    std::condition_variable m_changed;
    std::optional<Job> m_waiting;
    bool m_busy = false;
    bool m_ending = false;
    Outcome m_lastOutcome;

    std::thread m_thread; // started by the first job: who only reads needs none
};

} // namespace vorle
