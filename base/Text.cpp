#include "base/Text.h"

#include <QTextBoundaryFinder>

#include <algorithm>
#include <array>
#include <optional>
#include <utility>

namespace vorle {

bool isBlank(char16_t c) {
    if (c < 0x80) {
        return c == u' ' || (c >= u'\t' && c <= u'\r');
    }
    return c == 0x85 || c == 0xA0 || c == 0x1680 || (c >= 0x2000 && c <= 0x200A) || c == 0x2028 ||
           c == 0x2029 || c == 0x202F || c == 0x205F || c == 0x3000;
}

QStringView trimmed(QStringView text) {
    while (!text.isEmpty() && isBlank(text.front().unicode())) {
        text = text.sliced(1);
    }
    while (!text.isEmpty() && isBlank(text.back().unicode())) {
        text.chop(1);
    }
    return text;
}

namespace {

/// Whether two such code units side by side are always two characters: scripts and punctuation in
/// which nothing combines (CR LF is one character).
bool standsAlone(char16_t c) {
    return (c < 0x300 && c != u'\r') || (c >= 0x370 && c <= 0x482) || (c >= 0x48A && c <= 0x52F) ||
           (c >= 0x2010 && c <= 0x2027) || (c >= 0x2030 && c <= 0x205F) ||
           (c >= 0x20A0 && c <= 0x20BF) || (c >= 0x3001 && c <= 0x3029) ||
           (c >= 0x3041 && c <= 0x3096) || (c >= 0x30A1 && c <= 0x30FF) ||
           (c >= 0x4E00 && c <= 0x9FFF);
}

/// Steps through a text character by character, asking the platform (which takes fifty times
/// longer) only where something may combine. Looks little further than it has stepped.
class CharacterSteps {
public:
    explicit CharacterSteps(QStringView text) : m_text(text) {}

    bool atEnd() const { return m_at == m_text.size(); }

    /// The end of the next character; not at the end.
    qsizetype next() {
        const qsizetype after = m_at + 1;
        if (standsAlone(m_text[m_at].unicode()) &&
            (after == m_text.size() || standsAlone(m_text[after].unicode()))) {
            m_finder.reset();
            m_window = firstWindow;
            return m_at = after;
        }
        while (true) {
            const qsizetype step = m_finder ? m_finder->toNextBoundary() : -1;
            // At a window's end the character may go on beyond it.
            if (step > 0 && (m_from + step < m_to || m_to == m_text.size())) {
                return m_at = m_from + step;
            }
            m_from = m_at;
            m_to = std::min(m_text.size(), m_from + m_window);
            m_finder.emplace(QTextBoundaryFinder::Grapheme, m_text.sliced(m_from, m_to - m_from));
            m_window *= 4;
        }
    }

private:
    static constexpr qsizetype firstWindow = 32;

    QStringView m_text;
    qsizetype m_at = 0;
    std::optional<QTextBoundaryFinder> m_finder; ///< over the code units from m_from to m_to
    qsizetype m_from = 0;
    qsizetype m_to = 0;
    qsizetype m_window = firstWindow;
};

} // namespace

qsizetype characterCount(QStringView text) {
    CharacterSteps steps(text);
    qsizetype count = 0;
    for (; !steps.atEnd(); steps.next()) {
        ++count;
    }
    return count;
}

QStringView firstCharacters(QStringView text, qsizetype count) {
    CharacterSteps steps(text);
    qsizetype cut = 0;
    for (qsizetype found = 0; found < count && !steps.atEnd(); ++found) {
        cut = steps.next();
    }
    return text.first(cut);
}

QStringView lastCharacters(QStringView text, qsizetype count) {
    if (count <= 0) {
        return {};
    }
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
    finder.toEnd();
    qsizetype cut = text.size();
    for (qsizetype found = 0; found < count; ++found) {
        const qsizetype previous = finder.toPreviousBoundary();
        if (previous == -1) {
            return text;
        }
        cut = previous;
    }
    return text.sliced(cut);
}

namespace {

struct NamedEntity {
    QStringView name;
    char16_t value;
};

constexpr std::array<NamedEntity, 11> namedEntities{{
    {u"amp", u'&'},
    {u"lt", u'<'},
    {u"gt", u'>'},
    {u"quot", u'"'},
    {u"apos", u'\''},
    {u"nbsp", u' '},
    {u"rsquo", u'\u2019'},
    {u"lsquo", u'\u2018'},
    {u"hellip", u'\u2026'},
    {u"mdash", u'\u2014'},
    {u"ndash", u'\u2013'},
}};

int hexDigit(char16_t c) {
    if (c >= u'0' && c <= u'9') {
        return c - u'0';
    }
    if (c >= u'a' && c <= u'f') {
        return c - u'a' + 10;
    }
    if (c >= u'A' && c <= u'F') {
        return c - u'A' + 10;
    }
    return -1;
}

struct Entity {
    char32_t value = 0;
    qsizetype length = 0; ///< from the ampersand to the semicolon, both counted
};

std::optional<Entity> numericEntity(QStringView text) {
    const bool hexadecimal = text.size() > 2 && text[2] == u'x';
    const int base = hexadecimal ? 16 : 10;
    qsizetype at = hexadecimal ? 3 : 2;
    const qsizetype firstDigit = at;
    char32_t value = 0;
    for (; at < text.size(); ++at) {
        const int digit = hexDigit(text[at].unicode());
        if (digit < 0 || digit >= base) {
            break;
        }
        // Stays above the last code point once past it, however many digits follow.
        value = std::min<char32_t>(value * base + digit, 0x110000);
    }
    if (at == firstDigit || at >= text.size() || text[at] != u';') {
        return std::nullopt;
    }
    const bool scalar = value != 0 && value < 0x110000 && (value < 0xD800 || value > 0xDFFF);
    return Entity{scalar ? value : U'\uFFFD', at + 1};
}

/// The entity that begins with the ampersand at the start of `text`.
std::optional<Entity> entityAt(QStringView text) {
    if (text.size() > 2 && text[1] == u'#') {
        return numericEntity(text);
    }
    for (const auto &[name, value] : namedEntities) {
        const qsizetype end = 1 + name.size();
        if (text.size() > end && text[end] == u';' && text.sliced(1, name.size()) == name) {
            return Entity{value, end + 1};
        }
    }
    return std::nullopt;
}

} // namespace

QString decodeEntities(QStringView text) {
    QString out;
    out.reserve(text.size());
    qsizetype at = 0;
    while (at < text.size()) {
        const qsizetype ampersand = text.indexOf(u'&', at);
        if (ampersand < 0) {
            break;
        }
        out += text.sliced(at, ampersand - at);
        if (const auto entity = entityAt(text.sliced(ampersand))) {
            out += QChar::fromUcs4(entity->value);
            at = ampersand + entity->length;
        } else {
            out += u'&';
            at = ampersand + 1;
        }
    }
    out += text.sliced(at);
    return out;
}

namespace {

struct CodePoint {
    qsizetype units;
    qsizetype bytes;
};

/// The code point at the start of `text`; a lone surrogate is written as U+FFFD, in 3 bytes.
CodePoint codePointAt(QStringView text) {
    const char16_t c = text.front().unicode();
    if (c < 0x80) {
        return {1, 1};
    }
    if (c < 0x800) {
        return {1, 2};
    }
    const bool pair = QChar::isHighSurrogate(c) && text.size() > 1 && text[1].isLowSurrogate();
    return pair ? CodePoint{2, 4} : CodePoint{1, 3};
}

} // namespace

qsizetype utf8Size(QStringView text) {
    qsizetype size = 0;
    for (qsizetype at = 0; at < text.size();) {
        const CodePoint point = codePointAt(text.sliced(at));
        size += point.bytes;
        at += point.units;
    }
    return size;
}

QStringView utf8Prefix(QStringView text, qsizetype maxBytes) {
    qsizetype size = 0;
    qsizetype at = 0;
    while (at < text.size()) {
        const CodePoint point = codePointAt(text.sliced(at));
        if (size + point.bytes > maxBytes) {
            break;
        }
        size += point.bytes;
        at += point.units;
    }
    return text.first(at);
}

namespace {

/// Signs of numbers that are drawn before what they mark, though they are of category Cf.
bool isDrawnFormat(char32_t c) {
    return (c >= 0x600 && c <= 0x605) || c == 0x6DD || c == 0x70F || c == 0x890 || c == 0x891 ||
           c == 0x8E2 || c == 0x110BD || c == 0x110CD;
}

/// Whether a joiner behind `c` shapes what is seen.
bool takesJoiner(char32_t c) {
    if (QChar::category(c) == QChar::Symbol_Other || (c >= 0x1F3FB && c <= 0x1F3FF)) {
        return true; // an emoji, or the colour of its skin
    }
    switch (QChar::script(c)) {
    case QChar::Script_Unknown:
    case QChar::Script_Inherited:
    case QChar::Script_Common:
    case QChar::Script_Latin:
    case QChar::Script_Greek:
    case QChar::Script_Cyrillic:
    case QChar::Script_Armenian:
    case QChar::Script_Georgian:
    case QChar::Script_Hebrew:
    case QChar::Script_Han:
    case QChar::Script_Hiragana:
    case QChar::Script_Katakana:
    case QChar::Script_Hangul:
    case QChar::Script_Bopomofo:
        return false;
    default:
        return QChar::isLetter(c);
    }
}

bool breaksLine(char32_t c) {
    return (c >= U'\n' && c <= U'\r') || c == 0x85 || c == 0x2028 || c == 0x2029;
}

bool isBlankLine(QStringView line) { return trimmed(line).isEmpty(); }

} // namespace

QString withoutHidden(const QString &text) {
    // None of them is below U+00AD: most texts are left as they are at once.
    if (std::all_of(text.begin(), text.end(), [](QChar c) { return c.unicode() < 0xAD; })) {
        return text;
    }
    QString out;
    out.reserve(text.size());
    bool joins = false; // what came before takes a joiner
    for (const char32_t c : text.toUcs4()) {
        const bool joiner = c == 0x200C || c == 0x200D;
        const bool format = QChar::category(c) == QChar::Other_Format;
        if (format && !isDrawnFormat(c) && !(joiner && joins)) {
            continue;
        }
        out += QStringView(QChar::fromUcs4(c));
        if (!QChar::isMark(c)) {
            joins = takesJoiner(c);
        }
    }
    return out;
}

QString clampedLines(const QString &text, qsizetype maxCharacters) {
    constexpr qsizetype bytesPerCharacter = 8;
    QString lines;
    lines.reserve(text.size());
    const QString visible = withoutHidden(text);
    for (qsizetype at = 0; at < visible.size(); ++at) {
        const char16_t c = visible[at].unicode();
        if (c == u'\r' && at + 1 < visible.size() && visible[at + 1] == u'\n') {
            continue;
        }
        if (breaksLine(c)) {
            lines += u'\n';
        } else if (c == u'\t' || (c >= 0x20 && (c < 0x7F || c >= 0xA0))) {
            lines += visible[at];
        }
    }
    QStringView clamped = utf8Prefix(lines, maxCharacters * bytesPerCharacter);
    for (qsizetype end = clamped.indexOf(u'\n'); end >= 0 && isBlankLine(clamped.first(end));
         end = clamped.indexOf(u'\n')) {
        clamped = clamped.sliced(end + 1);
    }
    clamped = firstCharacters(clamped, maxCharacters);
    while (!clamped.isEmpty() && isBlank(clamped.back().unicode())) {
        clamped.chop(1);
    }
    return clamped.toString();
}

QString clampedLine(const QString &text, qsizetype maxCharacters) {
    QString line;
    // Blanks may take any room before they are made one.
    for (const QChar c : clampedLines(text, text.size())) {
        const bool fixed = c == u'\u00A0' || c == u'\u202F';
        if (fixed || !isBlank(c.unicode())) {
            line += c;
        } else if (!line.isEmpty() && line.back() != u' ') {
            line += u' ';
        }
    }
    return clampedLines(trimmed(line).toString(), maxCharacters);
}

} // namespace vorle
