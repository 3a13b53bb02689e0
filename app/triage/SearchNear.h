#pragma once

#include <QByteArray>
#include <QList>

#include <optional>
#include <vector>

namespace vorle {

/// Where a word stands in a folded text, and which letters it is made of: enough to pass over most
/// words without reading them.
struct WordPlace {
    quint32 letters = 0; ///< a bit each
    quint32 offset = 0;
    quint32 size = 0;

    bool operator==(const WordPlace &) const = default;
};

/// The words of a folded text, in their order. Pure.
QList<WordPlace> wordPlaces(QByteArrayView text);

/// A word as somebody typed it who was in a hurry: letters missing, doubled, changed or in the
/// wrong order. All texts are folded (see SearchFold). A value, any thread.
class NearWord {
public:
    explicit NearWord(QByteArray typed);

    /// Where in a text the nearest word stands that may have been meant.
    struct Place {
        qsizetype offset = 0;
        qsizetype size = 0; ///< of the text's whole word
        int mistakes = 0;   ///< 1 and more
    };
    /// The nearest, the first of equals; nothing where none is near enough. A word of fewer than
    /// four letters is taken as it was typed: everything would be near it.
    std::optional<Place> in(QByteArrayView text) const { return in(text, wordPlaces(text)); }
    /// The same, quicker where the words of the text are known.
    std::optional<Place> in(QByteArrayView text, const QList<WordPlace> &words) const;

    /// Which letters of `word` were typed, from the first to the last: their offsets.
    std::vector<qsizetype> lettersIn(QByteArrayView word) const;

private:
    int mistakesIn(QByteArrayView word) const;
    bool leavesOutOnly(QByteArrayView word) const;

    QByteArray m_typed;
    quint32 m_letters = 0;
    int m_allowed = 0; // changes; 0: not tried
};

} // namespace vorle
