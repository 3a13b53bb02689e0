#include "app/triage/SearchIndex.h"

#include "app/triage/SearchFold.h"
#include "app/triage/SearchSnippet.h"

#include <algorithm>
#include <cstring>
#include <optional>
#include <span>
#include <tuple>
#include <vector>

namespace vorle {

namespace {

constexpr qsizetype maxQueryCharacters = 200;
// Whoever finds as many has what was meant; what only looks alike would be noise.
constexpr std::ptrdiff_t enoughFound = 6;

bool sameTexts(const Topic &a, const Topic &b) {
    return a.title == b.title && a.tldr == b.tldr && a.summary == b.summary && a.why == b.why &&
           a.project == b.project && a.interest == b.interest && a.note == b.note &&
           a.brief == b.brief && a.seenText == b.seenText;
}

std::shared_ptr<const SearchEntry> entryOf(const TopicPtr &topic) {
    SearchEntry entry{topic, {}, {}};
    for (int field = 0; field < SearchEntry::FieldCount; ++field) {
        entry.fields[static_cast<std::size_t>(field)] =
            foldedForSearch(searchText(*topic, static_cast<SearchEntry::Field>(field)));
    }
    for (std::size_t field = 0; field < entry.words.size(); ++field) {
        entry.words[field] = wordPlaces(entry.fields[field]);
    }
    return std::make_shared<const SearchEntry>(std::move(entry));
}

/// A word of the query, and its letter that stands in the fewest places: looking for that one
/// first is what makes the search fast.
struct Word {
    QByteArray bytes;
    qsizetype rarest;
    NearWord near;
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
            words.append({bytes, rarest - bytes.begin(), NearWord(bytes)});
        }
    }
    // The longest word is the likeliest to be missing.
    std::ranges::stable_sort(words, std::ranges::greater(),
                             [](const Word &word) { return word.bytes.size(); });
    return words;
}

/// How a word stands in a text, the best first.
enum class How { Whole, Begins, Inside, Near };

/// Where it does: at the first place of the best kind.
struct Occurrence {
    qsizetype offset = 0;
    How how = How::Whole;
};

How howAt(QByteArrayView text, qsizetype at, qsizetype size) {
    if (at > 0 && belongsToWord(text[at - 1])) {
        return How::Inside;
    }
    const qsizetype end = at + size;
    return end < text.size() && belongsToWord(text[end]) ? How::Begins : How::Whole;
}

/// @param enough  what need not be bettered: in long texts a word that begins is as good as a
///                whole one
std::optional<Occurrence> find(QByteArrayView text, const Word &word, How enough) {
    std::optional<Occurrence> best;
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
            const qsizetype offset = at - text.data();
            const How how = howAt(text, offset, word.bytes.size());
            if (!best || how < best->how) {
                best = Occurrence{offset, how};
            }
            if (how <= enough) {
                break;
            }
        }
        ++at;
    }
    return best;
}

/// A topic in which all words were found; what ranks it, and where to cut its snippet.
struct Match {
    qsizetype entry = 0; ///< its place in the index
    bool outside = false;
    bool dismissed = false;
    bool near = false;
    int field = SearchEntry::Title; ///< the last of the fields it took
    int cost = 0;                   ///< of all words: their fields, and how they stand there
    qsizetype offset = 0;           ///< in that field
    qint64 foundAt = 0;

    void take(int at, const Occurrence &occurrence, int mistakes = 0) {
        cost += 4 * at + static_cast<int>(occurrence.how) + mistakes;
        near = near || occurrence.how == How::Near;
        if (at > field) {
            field = at;
            offset = occurrence.offset;
        }
    }
    auto rank() const { return std::tuple(outside, dismissed, near, field, cost, -foundAt, entry); }
};

/// Where the word stands, in the first field that has it.
bool take(const SearchEntry &entry, const Word &word, Match &match) {
    for (int field = 0; field < SearchEntry::FieldCount; ++field) {
        const How enough = field <= SearchEntry::Gist ? How::Whole : How::Begins;
        if (const auto at = find(entry.fields[static_cast<std::size_t>(field)], word, enough)) {
            match.take(field, *at);
            return true;
        }
    }
    return false;
}

/// The same for a word that looks alike: in titles and gists alone, since in a whole page there is
/// always one.
bool takeNear(const SearchEntry &entry, const Word &word, Match &match) {
    for (std::size_t field = 0; field < entry.words.size(); ++field) {
        if (const auto place = word.near.in(entry.fields[field], entry.words[field])) {
            match.take(static_cast<int>(field), {place->offset, How::Near}, place->mistakes);
            return true;
        }
    }
    return false;
}

/// The words before `missing` stand in the entry, that one does not; and so on.
bool nearlyMatches(const SearchEntry &entry, const QList<Word> &words, qsizetype missing,
                   Match &match) {
    for (qsizetype i = missing; i < words.size(); ++i) {
        if (!(i > missing && take(entry, words[i], match)) && !takeNear(entry, words[i], match)) {
            return false;
        }
    }
    return true;
}

bool isShown(const Topic &topic) {
    return topic.status != TopicStatus::Pending || isBeingRead(topic);
}

/// One search: what is looked for, and what was found so far.
class Search {
public:
    Search(const SearchIndex &index, const SearchAsk &ask)
        : m_index(index)
        , m_section(ask.section)
        , m_words(wordsOf(ask.words))
        , m_rest(ask.section ? wordsOf(ask.rest) : m_words) {}

    SearchAnswer answer() {
        if (m_words.isEmpty()) {
            return {};
        }
        findWords();
        findNear();
        const auto shown = static_cast<std::ptrdiff_t>(
            std::min(m_matches.size(), static_cast<std::size_t>(maxHits)));
        std::ranges::partial_sort(m_matches, m_matches.begin() + shown, {}, &Match::rank);
        SearchAnswer answer;
        answer.total = static_cast<qsizetype>(m_matches.size());
        answer.outside = std::ranges::count(m_matches, true, &Match::outside);
        const QList<QByteArray> all = bytesOf(m_words);
        const QList<QByteArray> rest = bytesOf(m_rest);
        for (const Match &match : std::span(m_matches).first(static_cast<std::size_t>(shown))) {
            const TopicPtr &topic = m_index[match.entry]->topic;
            const auto field = static_cast<SearchEntry::Field>(match.field);
            const QList<QByteArray> &words = match.outside ? all : rest;
            const Snippet snippet = snippetOf(*topic, field, match.offset, words, match.near);
            answer.hits.append(
                {topic, snippet.plain, snippet.styled, match.near, match.outside, words});
        }
        return answer;
    }

private:
    static QList<QByteArray> bytesOf(const QList<Word> &words) {
        QList<QByteArray> bytes;
        for (const Word &word : words) {
            bytes.append(word.bytes);
        }
        return bytes;
    }

    Match begin(qsizetype entry, bool outside) const {
        const Topic &topic = *m_index[entry]->topic;
        Match match;
        match.entry = entry;
        match.outside = outside;
        match.dismissed = topic.status == TopicStatus::Dismissed;
        match.foundAt = topic.foundAt.toMSecsSinceEpoch();
        return match;
    }
    bool isOutside(const Topic &topic) const { return m_section && sectionOf(topic) != m_section; }

    void findWords() {
        for (qsizetype i = 0; i < m_index.size(); ++i) {
            const SearchEntry &entry = *m_index[i];
            if (!isShown(*entry.topic)) {
                continue;
            }
            const bool outside = isOutside(*entry.topic);
            const QList<Word> &words = outside ? m_words : m_rest;
            Match match = begin(i, outside);
            const auto missing = std::ranges::find_if_not(
                words, [&](const Word &word) { return take(entry, word, match); });
            if (missing == words.end()) {
                m_matches.push_back(match);
            } else if (!outside) {
                m_missed.push_back({match, missing - words.begin()});
            }
        }
    }

    void findNear() {
        if (std::ranges::count(m_matches, false, &Match::outside) >= enoughFound) {
            return;
        }
        for (auto &[match, missing] : m_missed) {
            if (nearlyMatches(*m_index[match.entry], m_rest, missing, match)) {
                m_matches.push_back(match);
            }
        }
    }

    struct Missed {
        Match match; ///< of the words that were found
        qsizetype word = 0;
    };

    const SearchIndex &m_index;
    std::optional<TopicSection> m_section;
    QList<Word> m_words;
    QList<Word> m_rest; // what the topics of the section are searched for
    std::vector<Match> m_matches;
    std::vector<Missed> m_missed;
};

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
            index.append(std::make_shared<const SearchEntry>(
                SearchEntry{topic, known->fields, known->words}));
        } else {
            index.append(entryOf(topic));
        }
    }
    return index;
}

SearchAnswer searched(const SearchIndex &index, const SearchAsk &ask) {
    return Search(index, ask).answer();
}

} // namespace vorle
