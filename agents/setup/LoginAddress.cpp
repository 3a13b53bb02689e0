#include "agents/setup/LoginAddress.h"

#include "base/Text.h"

#include <algorithm>

namespace vorle {

namespace {

constexpr QStringView scheme(u"https://");
constexpr int endingSilence = 4;             ///< empty pieces that end an address
constexpr qsizetype longestAddress = 16'384; ///< past it, it is no address

bool endsAddress(QChar c) { return c == u'\a' || c == u'\x1B' || isBlank(c.unicode()); }

} // namespace

std::optional<QString> LoginAddress::found(qsizetype end) {
    m_done = true;
    return m_text.first(end);
}

std::optional<QString> LoginAddress::feed(QByteArrayView piece) {
    if (m_done) {
        return std::nullopt;
    }
    const QString more = m_decode(piece);
    m_text += more;
    m_silence = piece.isEmpty() ? m_silence + 1 : 0;
    for (;;) {
        const qsizetype start = m_text.indexOf(scheme);
        // What has come may end in the beginning of the scheme.
        m_text.remove(0, start >= 0 ? start
                                    : std::max<qsizetype>(0, m_text.size() - scheme.size() + 1));
        if (start < 0) {
            return std::nullopt;
        }
        const auto stop = std::find_if(m_text.cbegin(), m_text.cend(), endsAddress);
        const qsizetype end = stop - m_text.cbegin();
        const bool whole = stop != m_text.cend() || m_silence >= endingSilence;
        if (end <= scheme.size() ? stop != m_text.cend() : end > longestAddress) {
            m_text.remove(0, end); // the scheme alone, or what is none
        } else if (whole && end > scheme.size()) {
            return found(end);
        } else {
            return std::nullopt;
        }
    }
}

std::optional<QString> LoginAddress::finish() {
    m_silence = endingSilence;
    return feed({});
}

} // namespace vorle
