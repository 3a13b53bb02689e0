#include "app/triage/SearchNear.h"

#include "app/triage/SearchFold.h"

#include <algorithm>
#include <array>
#include <bit>

namespace vorle {

namespace {

constexpr qsizetype shortest = 4;   // of a word that is tried
constexpr qsizetype longest = 32;   // a longer one is no slip of the hand
constexpr qsizetype twoChanges = 8; // from so many letters on
constexpr qsizetype anyFirst = 6;   // from so many on, the first letter may be wrong too
constexpr int lettersLeftOut = 3;   // ranks below any number of changes
constexpr int none = 99;

/// One bit a letter; signs that share a bit only cost a closer look.
quint32 bit(char c) { return 1U << (static_cast<uchar>(c) & 31U); }

} // namespace

QList<WordPlace> wordPlaces(QByteArrayView text) {
    QList<WordPlace> words;
    words.reserve(text.size() / 5);
    for (qsizetype at = 0; at < text.size();) {
        if (!belongsToWord(text[at])) {
            ++at;
            continue;
        }
        const qsizetype begin = at;
        WordPlace word;
        while (at < text.size() && belongsToWord(text[at])) {
            word.letters |= bit(text[at++]);
        }
        word.offset = static_cast<quint32>(begin);
        word.size = static_cast<quint32>(at - begin);
        words.append(word);
    }
    return words;
}

NearWord::NearWord(QByteArray typed) : m_typed(std::move(typed)) {
    for (const char c : m_typed) {
        m_letters |= bit(c);
    }
    if (m_typed.size() >= shortest && m_typed.size() <= longest) {
        m_allowed = m_typed.size() < twoChanges ? 1 : 2;
    }
}

/// How many letters were changed, left out, added or swapped with their neighbour, at least, to
/// make the beginning of the word into what was typed. `none` past what is allowed.
int NearWord::mistakesIn(QByteArrayView word) const {
    const qsizetype rows = m_typed.size();
    const qsizetype columns = std::min<qsizetype>(word.size(), rows + m_allowed);
    std::array<std::array<int, longest + 4>, 3> table{}; // the last three rows
    auto *before = &table[0];
    auto *last = &table[1];
    auto *row = &table[2];
    for (qsizetype j = 0; j <= columns; ++j) {
        (*last)[std::size_t(j)] = static_cast<int>(j);
    }
    // Further from the diagonal than that there are too many mistakes already.
    qsizetype from = 0;
    qsizetype to = 0;
    for (qsizetype i = 1; i <= rows; ++i) {
        from = std::max<qsizetype>(1, i - m_allowed);
        to = std::min(columns, i + m_allowed);
        (*row)[std::size_t(from - 1)] = from == 1 ? static_cast<int>(i) : none;
        int least = none;
        for (qsizetype j = from; j <= to; ++j) {
            const auto at = std::size_t(j);
            const bool same = m_typed[i - 1] == word[j - 1];
            int cost =
                std::min({(*last)[at] + 1, (*row)[at - 1] + 1, (*last)[at - 1] + (same ? 0 : 1)});
            if (i > 1 && j > 1 && m_typed[i - 1] == word[j - 2] && m_typed[i - 2] == word[j - 1]) {
                cost = std::min(cost, (*before)[at - 2] + 1);
            }
            (*row)[at] = cost;
            least = std::min(least, cost);
        }
        (*row)[std::size_t(to + 1)] = none;
        if (least > m_allowed) {
            return none;
        }
        std::swap(before, last);
        std::swap(last, row);
    }
    return *std::min_element(last->begin() + from, last->begin() + to + 1);
}

/// Whether what was typed is the word with letters left out, the first one kept and at least half.
bool NearWord::leavesOutOnly(QByteArrayView word) const {
    if (word.size() > 2 * m_typed.size() || word[0] != m_typed[0]) {
        return false;
    }
    qsizetype next = 0;
    for (const char c : word) {
        next += next < m_typed.size() && c == m_typed[next] ? 1 : 0;
    }
    return next == m_typed.size();
}

std::optional<NearWord::Place> NearWord::in(QByteArrayView text,
                                            const QList<WordPlace> &words) const {
    if (m_allowed == 0) {
        return std::nullopt;
    }
    std::optional<Place> nearest;
    for (const WordPlace &place : words) {
        if (place.size < m_typed.size() - m_allowed ||
            std::popcount(m_letters & ~place.letters) > m_allowed) {
            continue;
        }
        const QByteArrayView word = text.sliced(place.offset, place.size);
        if (word[0] != m_typed[0] && m_typed.size() < anyFirst) {
            continue;
        }
        int mistakes = mistakesIn(word);
        if (mistakes == none && leavesOutOnly(word)) {
            mistakes = lettersLeftOut;
        }
        if (mistakes != none && (!nearest || mistakes < nearest->mistakes)) {
            nearest = Place{place.offset, place.size, mistakes};
        }
    }
    return nearest;
}

std::vector<qsizetype> NearWord::lettersIn(QByteArrayView word) const {
    // The longest row of letters that both have in the same order.
    const auto rows = std::size_t(std::min<qsizetype>(m_typed.size(), longest));
    const auto columns = std::size_t(std::min<qsizetype>(word.size(), 2 * longest));
    std::vector<int> common((rows + 1) * (columns + 1), 0);
    const auto at = [&](std::size_t i, std::size_t j) -> int & {
        return common[i * (columns + 1) + j];
    };
    const auto same = [&](std::size_t i, std::size_t j) {
        return m_typed[qsizetype(i)] == word[qsizetype(j)];
    };
    for (std::size_t i = rows; i-- > 0;) {
        for (std::size_t j = columns; j-- > 0;) {
            at(i, j) = same(i, j) ? at(i + 1, j + 1) + 1 : std::max(at(i + 1, j), at(i, j + 1));
        }
    }
    std::vector<qsizetype> letters;
    for (std::size_t i = 0, j = 0; i < rows && j < columns;) {
        if (same(i, j)) {
            letters.push_back(qsizetype(j));
            ++i;
            ++j;
        } else if (at(i + 1, j) > at(i, j + 1)) {
            ++i;
        } else {
            ++j;
        }
    }
    return letters;
}

} // namespace vorle
