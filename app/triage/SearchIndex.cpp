#include "app/triage/SearchIndex.h"

#include "app/triage/SearchFold.h"
#include "app/triage/SearchSnippet.h"

#include <algorithm>
#include <cstring>
#include <optional>
#include <tuple>

namespace vorle {

namespace {

constexpr qsizetype maxQueryCharacters = 200;

bool sameTexts(const Topic &a, const Topic &b) {
    return a.title == b.title && a.tldr == b.tldr && a.summary == b.summary && a.why == b.why &&
           a.project == b.project && a.interest == b.interest && a.note == b.note &&
           a.brief == b.brief && a.seenText == b.seenText;
}

std::shared_ptr<const SearchEntry> entryOf(const TopicPtr &topic) {
    SearchEntry entry{topic, {}};
    for (int field = 0; field < SearchEntry::FieldCount; ++field) {
        entry.fields[static_cast<std::size_t>(field)] =
            foldedForSearch(searchText(*topic, static_cast<SearchEntry::Field>(field)));
    }
    return std::make_shared<const SearchEntry>(std::move(entry));
}

/// A word of the query, and its letter that stands in the fewest places: looking for that one
/// first is what makes the search fast.
struct Word {
    QByteArray bytes;
    qsizetype rarest = 0;
};

int frequency(char c) {
    static constexpr std::string_view common = "esaitnrulodcmpvqfgbhjxyzwk";
    const auto rank = common.find(c);
    return rank == std::string_view::npos ? 0 : static_cast<int>(common.size() - rank);
}

QList<Word> wordsOf(const QString &query) {
    QList<Word> words;
    const QByteArray folded = foldedForSearch(QStringView(query).left(maxQueryCharacters));
    for (const QByteArray &bytes : folded.split(' ')) {
        if (!bytes.isEmpty()) {
            const auto rarest = std::ranges::min_element(bytes, {}, frequency);
            words.append({bytes, rarest - bytes.begin()});
        }
    }
    // The longest word is the likeliest to be missing.
    std::ranges::stable_sort(words, std::ranges::greater(),
                             [](const Word &word) { return word.bytes.size(); });
    return words;
}

bool belongsToWord(char c) {
    const auto byte = static_cast<uchar>(c);
    return byte >= 0x80 || (byte >= 'a' && byte <= 'z') || (byte >= '0' && byte <= '9');
}

/// Where a word stands in a text: at the first word it begins, else at the first place at all.
struct Occurrence {
    qsizetype offset = 0;
    bool beginsWord = false;
};

std::optional<Occurrence> find(QByteArrayView text, const Word &word) {
    std::optional<Occurrence> inside;
    const char *const last = text.data() + text.size() - word.bytes.size();
    const char *at = text.data();
    while (at <= last) {
        const auto *rare = static_cast<const char *>(std::memchr(
            at + word.rarest, word.bytes[word.rarest], static_cast<std::size_t>(last - at + 1)));
        if (rare == nullptr) {
            break;
        }
        at = rare - word.rarest;
        if (std::memcmp(at, word.bytes.constData(), static_cast<std::size_t>(word.bytes.size())) ==
            0) {
            const Occurrence occurrence{at - text.data(),
                                        at == text.data() || !belongsToWord(at[-1])};
            if (occurrence.beginsWord) {
                return occurrence;
            }
            inside = inside ? inside : occurrence;
        }
        ++at;
    }
    return inside;
}

/// A topic in which all words were found; what ranks it, and where to cut its snippet.
struct Match {
    const SearchEntry *entry = nullptr;
    bool dismissed = false;
    int field = SearchEntry::Title; ///< the last of the fields it took
    int cost = 0;                   ///< of all words: their fields, begun or inside
    qsizetype offset = 0;           ///< in that field
    qint64 foundAt = 0;
};

std::optional<Match> match(const SearchEntry &entry, const QList<Word> &words) {
    Match match{.entry = &entry,
                .dismissed = entry.topic->status == TopicStatus::Dismissed,
                .foundAt = entry.topic->foundAt.toMSecsSinceEpoch()};
    for (const Word &word : words) {
        int field = 0;
        std::optional<Occurrence> occurrence;
        for (; field < SearchEntry::FieldCount; ++field) {
            occurrence = find(entry.fields[static_cast<std::size_t>(field)], word);
            if (occurrence) {
                break;
            }
        }
        if (!occurrence) {
            return std::nullopt;
        }
        match.cost += 2 * field + (occurrence->beginsWord ? 0 : 1);
        if (field > match.field) {
            match.field = field;
            match.offset = occurrence->offset;
        }
    }
    return match;
}

bool isShown(const Topic &topic) {
    return topic.status != TopicStatus::Pending || isBeingRead(topic);
}

} // namespace

SearchIndex indexed(const SearchIndex &old, const QList<TopicPtr> &topics) {
    SearchIndex index;
    index.reserve(topics.size());
    for (qsizetype i = 0; i < topics.size(); ++i) {
        const TopicPtr &topic = topics[i];
        const auto known = i < old.size() ? old[i] : nullptr;
        if (known && known->topic == topic) {
            index.append(known);
        } else if (known && sameTexts(*known->topic, *topic)) {
            index.append(std::make_shared<const SearchEntry>(SearchEntry{topic, known->fields}));
        } else {
            index.append(entryOf(topic));
        }
    }
    return index;
}

QList<SearchHit> searched(const SearchIndex &index, const QString &query) {
    const QList<Word> words = wordsOf(query);
    if (words.isEmpty()) {
        return {};
    }
    std::vector<Match> matches;
    for (const auto &entry : index) {
        if (isShown(*entry->topic)) {
            if (const auto found = match(*entry, words)) {
                matches.push_back(*found);
            }
        }
    }
    std::ranges::stable_sort(matches, {}, [](const Match &found) {
        return std::tuple(found.dismissed, found.field, found.cost, -found.foundAt);
    });
    QList<QByteArray> texts;
    for (const Word &word : words) {
        texts.append(word.bytes);
    }
    QList<SearchHit> hits;
    for (const Match &found : matches) {
        if (hits.size() == maxHits) {
            break;
        }
        const auto field = static_cast<SearchEntry::Field>(found.field);
        const Snippet snippet = snippetOf(*found.entry->topic, field, found.offset, texts);
        hits.append({found.entry->topic, snippet.plain, snippet.styled});
    }
    return hits;
}

} // namespace vorle
