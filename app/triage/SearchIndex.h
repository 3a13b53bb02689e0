#pragma once

#include "app/triage/SearchNear.h"
#include "app/triage/SectionOrder.h"
#include "core/TopicStore.h"

#include <QByteArray>
#include <QList>
#include <QString>

#include <array>
#include <memory>
#include <optional>

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
    std::array<QList<WordPlace>, 2> words; ///< of the title and the gist: see NearWord
};

/// The entries in the store's order. About as large as the texts are.
using SearchIndex = QList<std::shared_ptr<const SearchEntry>>;

/// The index of these topics, keeping of the old one what has not changed.
SearchIndex indexed(const SearchIndex &old, const QList<TopicPtr> &topics);

/// What is looked for.
struct SearchAsk {
    QString words;                       ///< as they were typed
    std::optional<TopicSection> section; ///< one that some of the words name
    QString rest;                        ///< the words without those that name it
};

struct SearchHit {
    TopicPtr topic;
    QString snippet;         ///< around what was found, on one line
    QString styled;          ///< the same for Text.StyledText: escaped, what was found in bold
    bool near = false;       ///< words were found that look like those that were typed
    bool outside = false;    ///< of another section than the one that was named
    QList<QByteArray> words; ///< what was looked for in it, folded: what marks it
};

struct SearchAnswer {
    QList<SearchHit> hits; ///< the first `maxHits`
    qsizetype total = 0;   ///< of all topics found
    qsizetype outside = 0; ///< how many of those are of another section than the one named
};

inline constexpr qsizetype maxHits = 50;

/// The topics in which every word is found, in any order: those whose words stand in the title
/// first, then in the gist, then in notes, then in the read text; of equals, where they are whole
/// words, then where they begin one, then where they stand inside; then the newest. Where that
/// finds only a few, titles and gists with words that look alike follow.
///
/// Where a section is named, its topics come first, searched by the rest of the words: all of them
/// where there is no rest. Those of other sections follow in which every word is found, the name
/// too. Dismissed topics come after all others; those of a run still under way are left out.
SearchAnswer searched(const SearchIndex &index, const SearchAsk &ask);

/// A line for Text.StyledText: escaped, and in bold what the words found in it; with `near`, also
/// the letters that a word that looks alike shares with one that does not stand there.
QString markedForSearch(const QString &line, const QList<QByteArray> &words, bool near);

} // namespace vorle
