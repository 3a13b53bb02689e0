#pragma once

#include "core/TopicStore.h"

#include <QByteArray>
#include <QList>
#include <QString>

#include <memory>

namespace vorle {

/// Searching topics by their words. Pure functions on values, any thread.

/// A text without what a searcher leaves out: case, accents, ligatures ("œ" is "oe"), the shape of
/// apostrophes. UTF-8 in and out. Bytes that are no UTF-8 are kept as they are.
QByteArray foldedForSearch(QByteArrayView utf8);
QByteArray foldedForSearch(QStringView text);

/// One topic's texts, folded.
struct SearchEntry {
    TopicPtr topic;   ///< what it was made from
    QByteArray title; ///< rank 0
    QByteArray gist;  ///< rank 1: gist, summary, why; the project, the interest
    QByteArray notes; ///< rank 2: the note, the brief
    QByteArray seen;  ///< rank 3: the read text
};

/// The entries in the store's order.
using SearchIndex = QList<std::shared_ptr<const SearchEntry>>;

/// The index of these topics, keeping of the old one what has not changed.
SearchIndex indexed(const SearchIndex &old, const QList<TopicPtr> &topics);

struct SearchHit {
    TopicPtr topic;
    QString snippet;
    QString styled; ///< the snippet for Text.StyledText, escaped, what was found in bold
};

inline constexpr qsizetype mostHits = 50;

/// The topics in which every word of the query is found, at most `mostHits`: those whose words
/// stand in the title first, then in the gist, then in notes, then in the read text; of equals,
/// where they begin words before where they stand inside, then the newest. Dismissed topics come
/// after all others; those of a run still under way are left out.
QList<SearchHit> searched(const SearchIndex &index, const QString &query);

} // namespace vorle
