#pragma once

#include "core/TopicRecords.h"

#include <QList>
#include <QString>
#include <QUuid>

#include <optional>

namespace vorle {

/// What stood behind a topic's score when it was judged and has no room in its record.
struct ScoreProvenance {
    /// A reflex whose instruction line the judge was given.
    struct Reflex {
        QString id;
        QString title;           ///< French, as it read then
        json::Rest unknown = {}; ///< keys of a later version

        static constexpr auto jsonFields() {
            return std::tuple(json::field("id", &Reflex::id), json::field("title", &Reflex::title));
        }
        static constexpr auto jsonRest() { return &Reflex::unknown; }
        bool operator==(const Reflex &) const = default;
    };

    QUuid topic;
    QDateTime at;
    std::optional<QString> agent; ///< "claude" or "codex"; absent when the call did not say
    double relevance = 0;         ///< the judge's overall grade, 0 to 10, before rounding
    int bytesRead = 0;            ///< of the page's text, in UTF-8, as given to the judge
    int examples = 0;             ///< past decisions shown to the judge
    QList<Reflex> reflexes;
    json::Rest unknown = {}; ///< keys of a later version

    static constexpr auto jsonFields() {
        return std::tuple(json::field("topic", &ScoreProvenance::topic),
                          json::field("at", &ScoreProvenance::at),
                          json::field("agent", &ScoreProvenance::agent),
                          json::field("relevance", &ScoreProvenance::relevance),
                          json::field("bytesRead", &ScoreProvenance::bytesRead),
                          json::field("examples", &ScoreProvenance::examples),
                          json::field("reflexes", &ScoreProvenance::reflexes));
    }
    static constexpr auto jsonRest() { return &ScoreProvenance::unknown; }
    bool operator==(const ScoreProvenance &) const = default;
};

/// What stood behind the scores of all judged topics, in "score-notes.json": see TopicRecords for
/// how they are kept. Main thread; the store and the clock must outlive it, and it must outlive
/// every save under way.
class ScoreProvenanceLog {
public:
    ScoreProvenanceLog(const TopicStore &store, const Clock &clock);
    static QString fileName() { return QStringLiteral("score-notes.json"); }

    /// Puts these records in the place of all those kept beside `topicsFile`, for a log that is
    /// made afterwards. A failure is logged.
    static void replace(const QString &topicsFile, const QList<ScoreProvenance> &records);

    /// What stood behind this topic's score, or nothing.
    std::optional<ScoreProvenance> of(const QUuid &topic) { return m_records.of(topic); }
    /// Takes these records, in the place of older ones of the same topics, and has them written.
    Task<> add(QList<ScoreProvenance> records) { return m_records.add(std::move(records)); }

private:
    TopicRecords<ScoreProvenance> m_records;
};

} // namespace vorle
