#pragma once

#include "base/Async.h"
#include "base/Json.h"
#include "base/Log.h"
#include "core/TopicStore.h"
#include "storage/BesideTopics.h"
#include "storage/DurableFile.h"

#include <QHash>
#include <QList>
#include <QString>
#include <QUuid>

#include <algorithm>
#include <optional>
#include <utility>

namespace vorle {

/// What is known of topics and has no room in the topics file: one `Record` (with a `topic`, and
/// the moment `at`) a topic, the latest, in one JSON array in a file beside the topics file (see
/// sidecarPath; a preview keeps none). Read the first time it is needed, for a save on the thread
/// pool. Main thread; the store and the clock must outlive it, and it must outlive every save under
/// way.
///
/// Such a record is never worth a run: nothing here fails. What cannot be read or written is
/// logged. A file that was read and holds no such records is kept aside before the first save
/// replaces it; one that the system does not let be read is not replaced.
template <class Record>
class TopicRecords {
public:
    struct Names {
        QString file; ///< beside "topics.json"
        QString what; ///< the records, in the log: "the notes on scores"
    };

    TopicRecords(const TopicStore &store, const Clock &clock, const Names &names)
        : m_store(store)
        , m_clock(clock)
        , m_file(sidecarPath(store.file(), names.file))
        , m_what(names.what) {}
    TopicRecords(const TopicRecords &) = delete;
    TopicRecords &operator=(const TopicRecords &) = delete;
    ~TopicRecords() = default;

    /// The topic's record, or nothing.
    std::optional<Record> of(const QUuid &topic) {
        const auto found = all().constFind(topic);
        return found == m_records.cend() ? std::nullopt : std::optional(*found);
    }

    const QHash<QUuid, Record> &all() {
        if (!m_loaded) {
            take(read(m_file));
        }
        return m_records;
    }

    /// Takes these records, in the place of older ones of the same topics, and has them written by
    /// the thread pool, as a whole and atomically. Ends when they are on disk, or at once while an
    /// earlier call is writing: that one then writes these too before it ends. Records of topics
    /// that the store no longer holds go; all stay while the topics file itself could not be read.
    Task<> add(QList<Record> records) {
        for (const Record &record : records) {
            m_records.insert(record.topic, record);
        }
        m_dirty = true;
        if (m_saving || m_file.isEmpty()) {
            co_return;
        }
        m_saving = true;
        if (!m_loaded) {
            take(co_await onPool([file = m_file] { return read(file); }));
        }
        while (m_dirty && m_loaded) {
            m_dirty = false;
            dropOrphans();
            const auto unreadableAt = m_unreadable ? std::optional(m_clock.now()) : std::nullopt;
            const QString failure =
                co_await onPool([file = m_file, unreadableAt, all = m_records.values()] {
                    return written(file, unreadableAt, all);
                });
            if (failure.isEmpty()) {
                m_unreadable = false;
            } else {
                logLine(m_what + QStringLiteral(" could not be kept: ") + failure);
            }
        }
        m_saving = false;
    }

private:
    struct Contents {
        QList<Record> records;
        QString failure;      ///< why they could not be read; empty when they could
        bool refused = false; ///< by the system: says nothing of what the file holds
    };

    /// Any thread.
    static Contents read(const QString &file) {
        try {
            const auto bytes = file.isEmpty() ? std::nullopt : readWhole(file);
            return {bytes ? json::decode<QList<Record>>(*bytes) : QList<Record>(), {}};
        } catch (const json::DecodeError &error) {
            return {{}, QString::fromUtf8(error.what())};
        } catch (const std::exception &error) {
            return {{}, QString::fromLocal8Bit(error.what()), true};
        }
    }

    /// Gives what went wrong; empty when nothing did. Any thread. `unreadableAt`, when given, asks
    /// for the present file to be kept aside first, under that date.
    static QString written(const QString &file, const std::optional<QDateTime> &unreadableAt,
                           QList<Record> records) {
        // The same records always make the same file.
        std::ranges::sort(records, [](const Record &a, const Record &b) {
            return a.at != b.at ? a.at < b.at : a.topic < b.topic;
        });
        try {
            if (unreadableAt) {
                keepCopy(file, backupName(file, *unreadableAt));
            }
            replaceWhole(file, json::encode(records, json::Style::Pretty) + '\n');
        } catch (const std::exception &error) {
            return QString::fromLocal8Bit(error.what());
        }
        return {};
    }

    void take(const Contents &contents) {
        if (m_loaded) {
            return;
        }
        m_loaded = !contents.refused; // else it is tried again
        for (const Record &record : contents.records) {
            if (!m_records.contains(record.topic)) { // what came while the file was read is newer
                m_records.insert(record.topic, record);
            }
        }
        if (!contents.failure.isEmpty()) {
            logLine(m_what + QStringLiteral(" could not be read: ") + contents.failure);
            m_unreadable = !contents.refused;
        }
    }

    void dropOrphans() {
        if (m_store.setAside()) {
            return; // its topics may come back
        }
        m_records.removeIf([this](typename QHash<QUuid, Record>::iterator entry) {
            return m_store.topic(entry.key()) == nullptr;
        });
    }

    const TopicStore &m_store;
    const Clock &m_clock;
    QString m_file; ///< empty: nothing is kept
    QString m_what;
    QHash<QUuid, Record> m_records;
    bool m_loaded = false;
    bool m_unreadable = false; ///< and not kept aside yet
    bool m_dirty = false;
    bool m_saving = false;
};

} // namespace vorle
