#include "search/feeds/FeedMender.h"

#include "search/feeds/HtmlEntities.h"
#include "search/web/HtmlWord.h"

#include <QString>

#include <algorithm>
#include <array>
#include <cstring>

namespace vorle {

namespace {

using html::nowhere;

std::size_t lengthOfXmlReference(std::string_view text) {
    switch (text.size() > 2 ? text[1] : '\0') {
    case 'l':
        return text.starts_with("&lt;") ? 4 : 0;
    case 'g':
        return text.starts_with("&gt;") ? 4 : 0;
    case 'q':
        return text.starts_with("&quot;") ? 6 : 0;
    case 'a':
        return text.starts_with("&amp;") ? 5 : text.starts_with("&apos;") ? 6 : 0;
    default:
        return 0;
    }
}

/// One pass over the text from the root element on, which must outlive the result: what needs no
/// mending is shared. References in a text are decoded here, into a section, because libxml2 gives
/// each as an event of its own, and leaves them out altogether once it has met a fault.
class Mender {
public:
    explicit Mender(std::string_view text)
        : m_text(text), m_ampersand(std::min(text.find('&'), text.size())) {}

    QByteArray mended() {
        std::size_t at = 0;
        while (at < m_text.size()) { // each turn begins at a "<"
            std::size_t next = std::min(m_text.find('<', at + 1), m_text.size());
            if (const std::string_view end = endOfOpaque(at); !end.empty()) {
                at = passOpaque(at, end);
                continue;
            }
            if (!isTag(at)) {
                while (next < m_text.size() && !isTag(next) && endOfOpaque(next).empty()) {
                    next = std::min(m_text.find('<', next + 1), m_text.size());
                }
                mendText(at, next);
            } else if (m_ampersand < next || next - at > maxTextBytes) {
                const std::size_t text = endOfTag(at, next);
                if (text == nowhere) {
                    break;
                }
                mendAttributes(at, text);
                mendText(text, next);
            }
            at = next;
        }
        const std::size_t end = std::min(at, m_text.size());
        if (m_copied == 0) {
            const QByteArrayView whole(m_text.begin(), static_cast<qsizetype>(end));
            return QByteArray::fromRawData(whole.data(), whole.size());
        }
        copyUntil(end);
        return std::move(m_out);
    }

private:
    static constexpr std::size_t maxTextBytes = 5'000;
    static constexpr int maxAttributes = 512;
    static constexpr std::string_view section = "<![CDATA[";
    static constexpr std::string_view sectionEnd = "]]>";

    char characterAt(std::size_t at) const { return at < m_text.size() ? m_text[at] : '\0'; }

    /// Whether a parser can read the "<" at `at` as a tag; libxml2 stops for good at any other.
    bool isTag(std::size_t at) const {
        const char first = characterAt(characterAt(at + 1) == '/' ? at + 2 : at + 1);
        return ((first | 0x20) >= 'a' && (first | 0x20) <= 'z') || first == '_';
    }

    /// What ends the section, comment or instruction that begins at `at`; empty without one.
    std::string_view endOfOpaque(std::size_t at) const {
        const char second = characterAt(at + 1);
        if (second != '!' && second != '?') {
            return {};
        }
        const std::string_view rest = m_text.substr(at);
        return rest.starts_with(section)  ? sectionEnd
               : rest.starts_with("<!--") ? "-->"
               : second == '?'            ? "?>"
                                          : "";
    }

    /// Keeps a section, in which an ampersand is one, and leaves the others out. Gives where the
    /// next "<" stands; what never ends goes with all that follows.
    std::size_t passOpaque(std::size_t at, std::string_view end) {
        const bool kept = end == sectionEnd;
        const std::size_t found = m_text.find(end, at + (kept ? section.size() : 2));
        if (found == nowhere) {
            copyUntil(at);
            m_copied = m_text.size();
            return m_text.size();
        }
        const std::size_t after = found + end.size();
        if (!kept) {
            replace(at, after, {});
        } else if (found - at > maxTextBytes) {
            replace(wholeCharacters(at + maxTextBytes), found, {});
        }
        const std::size_t next = std::min(m_text.find('<', after), m_text.size());
        lookFrom(after);
        mendText(after, next);
        return next;
    }

    /// Past the tag at `at`, which ends before `end`; nowhere when it has too many attributes.
    std::size_t endOfTag(std::size_t at, std::size_t end) const {
        char quote = '\0';
        int attributes = 0;
        for (; at < end; ++at) {
            const char c = m_text[at];
            if (quote != '\0') {
                quote = c == quote ? '\0' : quote;
            } else if (c == '>') {
                return at + 1;
            } else if (c == '"' || c == '\'') {
                quote = c;
                if (++attributes > maxAttributes) {
                    return nowhere;
                }
            }
        }
        return end;
    }

    /// The last beginning of a character up to `at`.
    std::size_t wholeCharacters(std::size_t at) const {
        while ((static_cast<unsigned char>(m_text[at]) & 0xC0U) == 0x80U) {
            --at;
        }
        return at;
    }

    /// Keeps m_ampersand the first from `at` on.
    void lookFrom(std::size_t at) {
        if (m_ampersand < at) {
            m_ampersand = std::min(m_text.find('&', at), m_text.size());
        }
    }

    void mendAttributes(std::size_t from, std::size_t end) {
        for (lookFrom(from); m_ampersand < end;) {
            const std::size_t at = m_ampersand;
            const std::string_view text = m_text.substr(at, end - at);
            if (const std::size_t length = lengthOfXmlReference(text); length > 0) {
                lookFrom(at + length);
            } else if (const auto reference = characterReference(text)) {
                // Those a parser must not meet as themselves were written as numbers.
                const QByteArray mended =
                    reference->character < 0x80
                        ? "&#" + QByteArray::number(uint(reference->character)) + ';'
                        : utf8Of(reference->character);
                replace(
                    at, at + reference->length,
                    std::string_view(mended.constData(), static_cast<std::size_t>(mended.size())));
                lookFrom(at + reference->length);
            } else {
                replace(at, at + 1, "&amp;");
                lookFrom(at + 1);
            }
        }
    }

    /// Puts the text up to `end`, the next tag, into a section when it has references, begins with
    /// a "<" or is long.
    void mendText(std::size_t from, std::size_t end) {
        const bool needed =
            from < end && (m_ampersand < end || m_text[from] == '<' || end - from > maxTextBytes);
        if (!needed) {
            return;
        }
        replace(from, end, section);
        std::array<char, maxTextBytes + 4> buffer; // one character may pass the limit
        const std::string_view text(buffer.data(), decode(from, end, buffer.data()));
        std::size_t written = 0;
        for (std::size_t found = 0; (found = text.find(sectionEnd, written)) != nowhere;) {
            append(text.substr(written, found + 2 - written));
            append("]]><![CDATA[");
            written = found + 2;
        }
        append(text.substr(written));
        append(sectionEnd);
        lookFrom(end);
    }

    /// Writes the text with its references decoded, up to maxTextBytes; gives the size.
    std::size_t decode(std::size_t at, std::size_t end, char *out) {
        std::size_t size = 0;
        while (at < end && size < maxTextBytes) {
            if (at == m_ampersand) {
                at += decodeReference(m_text.substr(at, end - at), out, size);
                lookFrom(at);
                continue;
            }
            std::size_t stop = std::min(m_ampersand, end);
            if (stop - at > maxTextBytes - size) {
                end = stop = wholeCharacters(at + maxTextBytes - size);
            }
            std::memcpy(out + size, m_text.data() + at, stop - at);
            size += stop - at;
            at = stop;
        }
        return size;
    }

    /// Writes the character `text` begins with, "&" when it is none. Gives its length there.
    static std::size_t decodeReference(std::string_view text, char *out, std::size_t &size) {
        if (const std::size_t length = lengthOfXmlReference(text); length > 0) {
            out[size++] = text[1] == 'l'   ? '<'
                          : text[1] == 'g' ? '>'
                          : text[1] == 'q' ? '"'
                          : text[2] == 'm' ? '&'
                                           : '\'';
            return length;
        }
        const auto reference = characterReference(text);
        const QByteArray character = reference ? utf8Of(reference->character) : QByteArray("&");
        for (const char c : character) {
            out[size++] = c;
        }
        return reference ? reference->length : 1;
    }

    static QByteArray utf8Of(char32_t character) {
        return QString::fromUcs4(&character, 1).toUtf8();
    }

    /// Writes `with` in place of the text from `from`, not before what was written, to `end`.
    void replace(std::size_t from, std::size_t end, std::string_view with) {
        if (m_copied == 0) {
            m_out.reserve(static_cast<qsizetype>(m_text.size() + m_text.size() / 16));
        }
        copyUntil(from);
        append(with);
        m_copied = end;
    }

    void copyUntil(std::size_t end) {
        append(m_text.substr(m_copied, end - m_copied));
        m_copied = end;
    }

    void append(std::string_view text) {
        m_out.append(text.data(), static_cast<qsizetype>(text.size()));
    }

    std::string_view m_text;
    std::size_t m_copied = 0;
    std::size_t m_ampersand; ///< the first not looked at
    QByteArray m_out;
};

} // namespace

QByteArray mendedXml(std::string_view text) { return Mender(text).mended(); }

} // namespace vorle
