#pragma once

#include <QByteArray>

#include <optional>
#include <vector>

namespace vorle {

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
    std::optional<Place> in(QByteArrayView text) const;

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
