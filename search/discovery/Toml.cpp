#include "search/discovery/Toml.h"

namespace vorle::toml {

namespace {

bool isBlank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }

/// Where the string that opens at `at` ends, past its closing quote; the text's end for one that
/// never closes, or the line's for one that has only one line.
qsizetype stringEnd(QByteArrayView text, qsizetype at) {
    const char quote = text[at];
    const char triple[] = {quote, quote, quote};
    if (text.sliced(at).startsWith(QByteArrayView(triple, 3))) {
        const qsizetype close = text.indexOf(QByteArrayView(triple, 3), at + 3);
        return close < 0 ? text.size() : close + 3;
    }
    for (++at; at < text.size() && text[at] != '\n'; ++at) {
        if (text[at] == '\\' && quote == '"') {
            ++at;
        } else if (text[at] == quote) {
            return at + 1;
        }
    }
    return std::min(at, text.size());
}

/// The content of a string as it lies in the text, quotes and all.
QString unquoted(QByteArrayView quoted) {
    const bool triple = quoted.size() >= 6 && quoted[0] == quoted[1] && quoted[0] == quoted[2];
    const qsizetype quotes = triple ? 3 : 1;
    if (quoted.size() < 2 * quotes || quoted.back() != quoted.front()) {
        return {};
    }
    return QString::fromUtf8(quoted.sliced(quotes, quoted.size() - 2 * quotes));
}

/// A dotted key with what stands around its parts taken away.
QString tidyKey(QByteArrayView key) {
    QString tidy;
    for (const char c : key) {
        if (!isBlank(c) && c != '"' && c != '\'') {
            tidy += QLatin1Char(c);
        }
    }
    return tidy;
}

/// Reads a text entry by entry.
class Scanner {
public:
    explicit Scanner(QByteArrayView text) : m_text(text) {}

    /// `separator` ends a value outside brackets and strings.
    QList<Entry> read(char separator) {
        m_separator = separator;
        QList<Entry> found;
        while (skipToKey()) {
            if (m_text[m_at] == '[') {
                readHeader();
                continue;
            }
            const qsizetype begin = m_at;
            if (!skipKey()) {
                continue;
            }
            const QString key = tidyKey(m_text.sliced(begin, m_at - begin));
            ++m_at; // the "="
            found += {m_table, m_block, key, readValue()};
        }
        return found;
    }

private:
    bool skipToKey() {
        while (m_at < m_text.size()) {
            const char c = m_text[m_at];
            if (c == '#') {
                toLineEnd();
            } else if (isBlank(c) || c == m_separator) {
                ++m_at;
            } else {
                return true;
            }
        }
        return false;
    }

    /// Whether an equals sign comes before the line ends; else the line is passed over.
    bool skipKey() {
        while (m_at < m_text.size() && m_text[m_at] != '=' && m_text[m_at] != '\n') {
            const bool quote = m_text[m_at] == '"' || m_text[m_at] == '\'';
            m_at = quote ? stringEnd(m_text, m_at) : m_at + 1;
        }
        return m_at < m_text.size() && m_text[m_at] == '=';
    }

    void readHeader() {
        const qsizetype begin = m_at;
        toLineEnd();
        QByteArrayView header = m_text.sliced(begin, m_at - begin);
        while (!header.isEmpty() && header.front() == '[') {
            header = header.sliced(1);
        }
        const qsizetype close = header.indexOf(']');
        m_table = tidyKey(close < 0 ? header : header.first(close));
        ++m_block;
    }

    QByteArray readValue() {
        QByteArray value;
        int depth = 0;
        while (m_at < m_text.size()) {
            const char c = m_text[m_at];
            if (c == '"' || c == '\'') {
                const qsizetype end = stringEnd(m_text, m_at);
                value += m_text.sliced(m_at, end - m_at);
                m_at = end;
                continue;
            }
            if (c == '#') {
                toLineEnd();
                continue;
            }
            if (depth == 0 && c == m_separator) {
                break;
            }
            depth = std::max(0, depth + (c == '[' || c == '{' ? 1 : c == ']' || c == '}' ? -1 : 0));
            value += isBlank(c) ? ' ' : c;
            ++m_at;
        }
        return value.trimmed();
    }

    void toLineEnd() {
        const qsizetype end = m_text.indexOf('\n', m_at);
        m_at = end < 0 ? m_text.size() : end;
    }

    QByteArrayView m_text;
    qsizetype m_at = 0;
    char m_separator = '\n';
    QString m_table;
    int m_block = 0;
};

} // namespace

QList<Entry> entries(QByteArrayView text) { return Scanner(text).read('\n'); }

QString string(QByteArrayView value) {
    const bool quoted = !value.isEmpty() && (value.front() == '"' || value.front() == '\'');
    return quoted && stringEnd(value, 0) == value.size() ? unquoted(value) : QString();
}

QStringList strings(QByteArrayView value) {
    QStringList found;
    for (qsizetype at = 0; at < value.size();) {
        if (value[at] != '"' && value[at] != '\'') {
            ++at;
            continue;
        }
        const qsizetype end = stringEnd(value, at);
        found += unquoted(value.sliced(at, end - at));
        at = end;
    }
    return found;
}

QList<Entry> inlineTable(QByteArrayView value) {
    if (value.size() < 2 || value.front() != '{' || value.back() != '}') {
        return {};
    }
    return Scanner(value.sliced(1, value.size() - 2)).read(',');
}

} // namespace vorle::toml
