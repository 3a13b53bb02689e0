#include "search/feeds/FeedText.h"

#include "base/Ascii.h"
#include "base/Text.h"
#include "search/feeds/HtmlEntities.h"

#include <algorithm>
#include <array>
#include <string>

namespace vorle {

namespace {

/// The name of the tag `text` begins with, "/" aside; empty when it is none.
std::string_view tagName(std::string_view text) {
    const std::size_t start = text.size() > 1 && text[1] == '/' ? 2 : 1;
    std::size_t end = start;
    while (end < text.size() &&
           (ascii::isLetter(text[end]) || (end > start && text[end] >= '0' && text[end] <= '9'))) {
        ++end;
    }
    return end > start ? text.substr(start, end - start) : std::string_view();
}

/// Whether a title's "<" opens a tag. "Vec<T>" and "a < b" do not: a tag of HTML is known, in lower
/// case and ends like one.
bool isTitleTag(std::string_view text, std::string_view name) {
    const std::size_t after = static_cast<std::size_t>(name.data() - text.data()) + name.size();
    const bool ends = after < text.size() &&
                      std::string_view("> /\n\t").find(text[after]) != std::string_view::npos;
    return ends && (isInlineElement(name) || name == "br" || name == "wbr" || name == "p");
}

/// The length of the blank or control character `text` begins with, in bytes; 0 for any other.
std::size_t blankLength(std::string_view text) {
    const auto byte = [&](std::size_t at) {
        return at < text.size() ? static_cast<unsigned char>(text[at]) : 0U;
    };
    switch (byte(0)) {
    case 0xC2: // U+0085, U+00A0
        return byte(1) == 0x85 || byte(1) == 0xA0 ? 2 : 0;
    case 0xE1: // U+1680
        return byte(1) == 0x9A && byte(2) == 0x80 ? 3 : 0;
    case 0xE2: { // U+2000 to U+200A, U+2028, U+2029, U+202F, U+205F
        const bool general = byte(1) == 0x80 && (byte(2) <= 0x8A || byte(2) == 0xA8 ||
                                                 byte(2) == 0xA9 || byte(2) == 0xAF);
        return general || (byte(1) == 0x81 && byte(2) == 0x9F) ? 3 : 0;
    }
    case 0xE3: // U+3000
        return byte(1) == 0x80 && byte(2) == 0x80 ? 3 : 0;
    default:
        return byte(0) <= 0x20 || byte(0) == 0x7F ? 1 : 0;
    }
}

enum class Byte : quint8 {
    Ordinary, ///< part of a word, be it of a longer character
    Blank,    ///< or a control character
    Special   ///< only what follows tells: a tag, a reference, a blank beyond ASCII
};

constexpr std::array<Byte, 256> byteTable() {
    std::array<Byte, 256> table{};
    for (std::size_t byte = 0; byte < 256; ++byte) {
        const bool blank = byte <= 0x20 || byte == 0x7F;
        const bool special = byte == '<' || byte == '&' || byte == 0xC2 || byte == 0xE1 ||
                             byte == 0xE2 || byte == 0xE3;
        table[byte] = blank ? Byte::Blank : special ? Byte::Special : Byte::Ordinary;
    }
    return table;
}

/// Writes one line: runs of blanks as one, none at either end.
class LineWriter {
public:
    /// Whether the line holds more characters than are wanted: those of ASCII are one each.
    bool holdsMoreThan(std::size_t characters) const { return m_ascii > characters; }

    void blank() {
        if (m_size > 0 && m_line[m_size - 1] != ' ') {
            m_line[m_size++] = ' ';
            ++m_ascii;
        }
    }

    void byte(char c) {
        m_line[m_size++] = c;
        m_ascii += static_cast<quint8>(c) < 0x80 ? 1U : 0U;
    }

    /// Writes what `text` begins with, up to a special byte; gives the number of bytes.
    std::size_t run(std::string_view text) {
        static constexpr auto table = byteTable();
        std::size_t at = 0;
        for (; at < text.size(); ++at) {
            const Byte kind = table[static_cast<quint8>(text[at])];
            if (kind == Byte::Ordinary) {
                byte(text[at]);
            } else if (kind == Byte::Blank) {
                blank();
            } else {
                break;
            }
        }
        return at;
    }

    QString take(qsizetype maxCharacters) const {
        const QString line = QString::fromUtf8(m_line.data(), static_cast<qsizetype>(m_size));
        if (line.size() > maxCharacters) {
            return trimmed(firstCharacters(line, maxCharacters)).toString();
        }
        return line.endsWith(u' ') ? line.chopped(1) : line;
    }

private:
    std::array<char, plainTextBytes + 4> m_line; // not cleared: what is read was written
    std::size_t m_size = 0;
    std::size_t m_ascii = 0;
};

/// Where what begins with a "<" at `at` ends, if it is to be taken out; `at` otherwise.
std::size_t endOfTag(std::string_view text, std::size_t at, Markup markup) {
    const std::string_view rest = text.substr(at);
    if (markup == Markup::None || rest.front() != '<') {
        return at;
    }
    const auto past = [&](std::string_view end) {
        const std::size_t found = text.find(end, at);
        return found == std::string_view::npos ? text.size() : found + end.size();
    };
    if (markup == Markup::Any && rest.starts_with("<!--")) {
        return past("-->");
    }
    const std::string_view name = tagName(rest);
    const bool tag = markup == Markup::Any ? !name.empty() || rest.starts_with("<!")
                                           : !name.empty() && isTitleTag(rest, name);
    if (!tag) {
        return at;
    }
    if (rest.starts_with("<script")) {
        return past("</script>");
    }
    if (rest.starts_with("<style")) {
        return past("</style>");
    }
    return past(">");
}

} // namespace

bool isInlineElement(std::string_view name) {
    static constexpr std::array<std::string_view, 24> names{
        "a",   "abbr", "b",    "bdi", "big", "cite",  "code", "del",    "em",  "font", "i",  "img",
        "ins", "kbd",  "nobr", "q",   "s",   "small", "span", "strong", "sub", "sup",  "tt", "u"};
    return std::ranges::binary_search(names, name);
}

QString plainText(std::string_view utf8, Markup markup, qsizetype maxCharacters) {
    const std::string_view text = utf8.substr(0, plainTextBytes);
    // Every tag and reference is longer than what is written for it.
    LineWriter line;
    std::size_t at = 0;
    while (!line.holdsMoreThan(static_cast<std::size_t>(maxCharacters))) {
        at += line.run(text.substr(at));
        if (at >= text.size()) {
            break;
        }
        const std::string_view rest = text.substr(at);
        if (const std::size_t blanks = blankLength(rest); blanks > 0) {
            line.blank();
            at += blanks;
        } else if (const auto reference =
                       markup != Markup::None ? characterReference(rest) : std::nullopt) {
            const QByteArray character = QString::fromUcs4(&reference->character, 1).toUtf8();
            if (blankLength({character.constData(), static_cast<std::size_t>(character.size())})) {
                line.blank();
            } else {
                std::ranges::for_each(character, [&](char c) { line.byte(c); });
            }
            at += reference->length;
        } else if (const std::size_t end = endOfTag(text, at, markup); end > at) {
            if (!isInlineElement(tagName(rest))) {
                line.blank();
            }
            at = end;
        } else {
            line.byte(rest.front());
            ++at;
        }
    }
    return line.take(maxCharacters);
}

} // namespace vorle
