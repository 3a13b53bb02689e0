#pragma once

#include "core/TopicStore.h"

#include <QByteArray>
#include <QList>
#include <QString>

#include <array>
#include <memory>

namespace vorle {

/// Searching topics by their words. Pure functions on values, any thread.

/// One topic's texts, folded (see SearchFold), best rank first.
struct SearchEntry {
    enum Field {
        Title,
        Gist,    ///< gist, summary, why; the project, the interest
        Written, ///< the note, the brief
        Seen,    ///< the read text
        FieldCount
    };

    TopicPtr topic; ///< what it was made from
    std::array<QByteArray, FieldCount> fields;
};

/// The entries in the store's order. About as large as the texts are.
using SearchIndex = QList<std::shared_ptr<const SearchEntry>>;

/// The index of these topics, keeping of the old one what has not changed.
SearchIndex indexed(const SearchIndex &old, const QList<TopicPtr> &topics);

struct SearchHit {
    TopicPtr topic;
    QString snippet; ///< around what was found, on one line
    QString styled;  ///< the same for Text.StyledText: escaped, what was found in bold
};

inline constexpr qsizetype maxHits = 50;

/// The topics in which every word of the query is found, at most `maxHits`: those whose words
/// stand in the title first, then in the gist, then in notes, then in the read text; of equals,
/// where they begin words before where they stand inside, then the newest. Dismissed topics come
/// after all others; those of a run still under way are left out.
QList<SearchHit> searched(const SearchIndex &index, const QString &query);

} // namespace vorle
