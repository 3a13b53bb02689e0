#include "core/TopicSalvage.h"

#include <algorithm>
#include <optional>

namespace vorle {

namespace {

/// Goes through the text once and gives the bytes of one entry after the other.
class Entries {
public:
    /// The entries from the first brace past `from` on.
    Entries(QByteArrayView text, qsizetype from) : m_text(text), m_at(text.indexOf('{', from)) {
        if (m_at < 0) {
            m_at = m_text.size();
            return;
        }
        const qsizetype line = m_text.first(m_at).lastIndexOf('\n');
        const QByteArrayView before = m_text.sliced(line + 1, m_at - line - 1);
        if (before.trimmed().isEmpty()) {
            m_lineStart = '\n' + before.toByteArray() + '{';
        }
    }

    /// The next entry, whole or torn, or nothing at the end.
    std::optional<QByteArrayView> next() {
        while (m_at < m_text.size() && m_text[m_at] != '{') {
            ++m_at;
        }
        if (m_at >= m_text.size()) {
            return std::nullopt;
        }
        const qsizetype start = m_at;
        qsizetype depth = 0;
        bool inText = false;
        for (; m_at < m_text.size(); ++m_at) {
            const char c = m_text[m_at];
            if (c == '\n') {
                inText = false; // no text of JSON holds one
                if (m_at > start && isEntryLine()) {
                    break;
                }
            } else if (inText && c == '\\') {
                ++m_at;
            } else if (c == '"') {
                inText = !inText;
            } else if (!inText && (c == '{' || c == '[')) {
                ++depth;
            } else if (!inText && (c == '}' || c == ']') && --depth == 0) {
                ++m_at;
                break;
            }
        }
        m_at = std::min(m_at, m_text.size());
        return m_text.sliced(start, m_at - start);
    }

private:
    bool isEntryLine() const {
        return !m_lineStart.isEmpty() && m_text.sliced(m_at).startsWith(m_lineStart);
    }

    QByteArrayView m_text;
    qsizetype m_at;
    QByteArray m_lineStart; ///< what an entry's first line begins with, in a file laid out by line
};

TopicSalvage salvaged(const QByteArray &utf8, qsizetype from) {
    TopicSalvage salvage;
    Entries entries(utf8, from);
    while (const auto entry = entries.next()) {
        try {
            salvage.topics.append(json::decode<Topic>(entry->toByteArray()));
        } catch (const json::DecodeError &) {
            ++salvage.left;
        }
    }
    return salvage;
}

} // namespace

TopicSalvage salvageTopics(const QByteArray &utf8) {
    TopicSalvage salvage = salvaged(utf8, 0);
    // An object may stand around the list.
    if (const qsizetype list = utf8.indexOf('['); salvage.topics.isEmpty() && list >= 0) {
        TopicSalvage inside = salvaged(utf8, list);
        return inside.topics.isEmpty() ? salvage : inside;
    }
    return salvage;
}

} // namespace vorle
