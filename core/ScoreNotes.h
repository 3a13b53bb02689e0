#pragma once

#include "base/Async.h"
#include "core/TopicStore.h"

#include <QHash>
#include <QList>
#include <QString>
#include <QUuid>

#include <optional>

namespace vorle {

/// What stood behind a topic's score when it was judged and has no room in its record.
struct ScoreNote {
    /// A reflex whose instruction line the judge was given.
    struct Reflex {
        QString id;
        QString title; ///< French, as it read then

        static constexpr auto jsonFields() {
            return std::tuple(json::field("id", &Reflex::id), json::field("title", &Reflex::title));
        }
        bool operator==(const Reflex &) const = default;
    };

    QUuid topic;
    QDateTime at;
    std::optional<QString> agent; ///< "claude" or "codex"; absent when the call did not say
    double relevance = 0;         ///< the judge's overall grade, 0 to 10, before rounding
    int bytesRead = 0;            ///< of the page's text, in UTF-8, as given to the judge
    int examples = 0;             ///< past decisions shown to the judge
    QList<Reflex> reflexes;

    static constexpr auto jsonFields() {
        return std::tuple(json::field("topic", &ScoreNote::topic),
                          json::field("at", &ScoreNote::at),
                          json::field("agent", &ScoreNote::agent),
                          json::field("relevance", &ScoreNote::relevance),
                          json::field("bytesRead", &ScoreNote::bytesRead),
                          json::field("examples", &ScoreNote::examples),
                          json::field("reflexes", &ScoreNote::reflexes));
    }
    bool operator==(const ScoreNote &) const = default;
};

/// The notes of all judged topics: one JSON array in "score-notes.json" beside the topics file
/// (with the topics file's name before it when that is not "topics.json"; a preview keeps none).
/// One note a topic, the latest. Read the first time it is needed, for a save on the thread pool.
/// Main thread; the store and the clock must outlive it, and it must outlive every save under way.
///
/// A note explains a score and is never worth a run: nothing here fails. What cannot be read or
/// written is logged; an unreadable file is kept aside before the first save replaces it.
class ScoreNotes {
public:
    ScoreNotes(const TopicStore &store, const Clock &clock);
    ScoreNotes(const ScoreNotes &) = delete;
    ScoreNotes &operator=(const ScoreNotes &) = delete;
    ~ScoreNotes() = default;

    /// The topic's note, or nothing.
    std::optional<ScoreNote> note(const QUuid &topic);

    /// Takes these notes, in the place of older ones of the same topics, and has them written by
    /// the thread pool, as a whole and atomically. Ends when they are on disk, or at once while an
    /// earlier call is writing: that one then writes these too before it ends. Notes of topics that
    /// the store no longer holds go; all stay while the topics file itself could not be read.
    Task<> add(QList<ScoreNote> notes);

private:
    struct Contents {
        QList<ScoreNote> notes;
        QString failure; ///< why they could not be read; empty when they could
    };
    static Contents read(const QString &file);

    void take(const Contents &contents);
    void dropOrphans();

    const TopicStore &m_store;
    const Clock &m_clock;
    QString m_file; ///< empty: nothing is kept
    QHash<QUuid, ScoreNote> m_notes;
    bool m_loaded = false;
    bool m_unreadable = false; ///< and not kept aside yet
    bool m_dirty = false;
    bool m_saving = false;
};

} // namespace vorle
