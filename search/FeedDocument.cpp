#include "search/FeedDocument.h"

#include "search/Charset.h"
#include "search/HtmlEntities.h"

#include <QString>

#include <algorithm>
#include <string_view>

namespace vorle {

namespace {

constexpr auto nowhere = std::string_view::npos;

std::string_view viewOf(QByteArrayView bytes) {
    return {bytes.data(), static_cast<std::size_t>(bytes.size())};
}

/// The encoding the XML declaration names, in lower case.
QByteArray declaredEncoding(QByteArrayView bytes) {
    constexpr qsizetype searched = 1'024;
    const QByteArray head = bytes.first(std::min(bytes.size(), searched)).toByteArray();
    const auto start = head.indexOf("<?xml");
    const auto end = start < 0 ? -1 : head.indexOf("?>", start);
    const auto name = head.indexOf("encoding", std::max<qsizetype>(start, 0));
    if (end < 0 || name < 0 || name > end) {
        return {};
    }
    QByteArray value = head.sliced(name + 8, end - name - 8).trimmed();
    if (!value.startsWith('=')) {
        return {};
    }
    value = value.sliced(1).trimmed();
    const char quote = value.isEmpty() ? '\0' : value.front();
    const auto close = quote == '"' || quote == '\'' ? value.indexOf(quote, 1) : -1;
    return close < 0 ? QByteArray() : value.sliced(1, close - 1).trimmed().toLower();
}

/// Encodings that need no byte above 127 to say something else than ASCII.
bool isSevenBits(const QByteArray &encoding) {
    return encoding.startsWith("iso-2022") || encoding.startsWith("utf-7") ||
           encoding.startsWith("hz");
}

bool isUtf16(std::string_view text) {
    using namespace std::string_view_literals;
    return text.starts_with("\xFF\xFE") || text.starts_with("\xFE\xFF") ||
           text.starts_with("<\0"sv) || text.starts_with("\0<"sv);
}

QByteArray decoded(QByteArrayView bytes, QByteArrayView contentType) {
    const std::string_view text = viewOf(bytes);
    if (isUtf16(text)) {
        const char *type = text.front() == '\0' || text.front() == '\xFE' ? "charset=utf-16be"
                                                                          : "charset=utf-16le";
        return decodeText(bytes, type).value_or(QByteArray());
    }
    const QByteArray declared = declaredEncoding(bytes);
    if (bytes.isValidUtf8() && !isSevenBits(declared)) {
        return bytes.toByteArray();
    }
    const bool utf8 = declared.isEmpty() || declared.startsWith("utf");
    if (!utf8) {
        return decodeText(bytes, "charset=" + declared).value_or(QByteArray());
    }
    const bool named = contentType.toByteArray().toLower().contains("charset");
    return decodeText(bytes, named ? contentType : QByteArrayView("charset=utf-8"))
        .value_or(QByteArray());
}

/// Takes out what no XML document may hold: most control characters, U+FFFE and U+FFFF.
void dropForeignCharacters(QByteArray &text) {
    const auto isControl = [](unsigned char c) {
        return c < 0x20 && c != '\t' && c != '\n' && c != '\r';
    };
    unsigned suspicious = 0;
    for (const char c : std::as_const(text)) { // no early way out: the loop is vectorised
        const auto byte = static_cast<unsigned char>(c);
        suspicious |= static_cast<unsigned>(byte < 0x20) & static_cast<unsigned>(byte != '\t') &
                      static_cast<unsigned>(byte != '\n') & static_cast<unsigned>(byte != '\r');
        suspicious |= static_cast<unsigned>(byte == 0xEF);
    }
    if (suspicious == 0) {
        return;
    }
    char *const data = text.data();
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (isControl(static_cast<unsigned char>(data[i]))) {
            data[i] = ' ';
        } else if (data[i] == '\xEF' && i + 2 < text.size() && data[i + 1] == '\xBF' &&
                   (data[i + 2] == '\xBE' || data[i + 2] == '\xBF')) {
            data[i + 2] = '\xBD'; // U+FFFD
        }
    }
}

/// Where a "<!DOCTYPE …>" that begins at `at` ends; nowhere when it does not.
std::size_t endOfDeclaration(std::string_view text, std::size_t at) {
    char quote = '\0';
    int brackets = 0;
    while (at < text.size()) {
        const char c = text[at];
        if (quote != '\0') {
            quote = c == quote ? '\0' : quote;
        } else if (text.substr(at).starts_with("<!--")) {
            at = text.find("-->", at);
            if (at == nowhere) {
                return nowhere;
            }
        } else if (c == '"' || c == '\'') {
            quote = c;
        } else if (c == '[' || c == ']') {
            brackets += c == '[' ? 1 : -1;
        } else if (c == '>' && brackets <= 0) {
            return at + 1;
        }
        ++at;
    }
    return nowhere;
}

/// From the root element on.
std::string_view fromRoot(std::string_view text) {
    // Servers put warnings of their own, which are HTML, before what they meant to send.
    constexpr std::size_t warnings = 8'192;
    const std::size_t declaration = text.substr(0, warnings).find("<?xml");
    std::size_t at = text.find('<', declaration == nowhere ? 0 : declaration);
    while (at != nowhere) {
        const std::string_view rest = text.substr(at);
        std::size_t end = at + 1;
        if (rest.starts_with("<?")) {
            end = text.find("?>", at);
        } else if (rest.starts_with("<!--")) {
            end = text.find("-->", at + 4);
        } else if (rest.starts_with("<!")) {
            end = endOfDeclaration(text, at + 2);
        } else if (rest.size() > 1 && ((rest[1] | 0x20) >= 'a' && (rest[1] | 0x20) <= 'z')) {
            return rest;
        }
        at = end == nowhere ? nowhere : text.find('<', end);
    }
    return {};
}

/// One pass over the text from the root element on. What needs no mending is copied in one go.
class Mender {
public:
    explicit Mender(std::string_view text) : m_text(text) {}

    QByteArray mended() {
        std::size_t at = 0;
        while (at < m_text.size()) { // each turn begins at a "<"
            const std::size_t next = std::min(m_text.find('<', at + 1), m_text.size());
            if (const std::string_view end = endOfOpaque(at); !end.empty()) {
                at = passOpaque(at, end);
                continue;
            }
            if (!isTag(at)) {
                replace(at, 1, "&lt;");
            } else if (next - at > ordinaryTag && hasTooManyAttributes(at, next)) {
                break;
            }
            mendReferences(at, next);
            at = next;
        }
        copyUntil(std::min(at, m_text.size()));
        return std::move(m_out);
    }

private:
    static constexpr std::size_t ordinaryTag = 4'096;
    static constexpr int mostAttributes = 512;
    static constexpr std::string_view section = "<![CDATA[";

    char characterAt(std::size_t at) const { return at < m_text.size() ? m_text[at] : '\0'; }

    /// Whether a parser can read the "<" at `at` as a tag; libxml2 stops for good at any other.
    bool isTag(std::size_t at) const {
        const char first = characterAt(characterAt(at + 1) == '/' ? at + 2 : at + 1);
        return ((first | 0x20) >= 'a' && (first | 0x20) <= 'z') || first == '_';
    }

    /// What ends the section, comment or instruction that begins at `at`; empty without one.
    std::string_view endOfOpaque(std::size_t at) const {
        const std::string_view rest = m_text.substr(at);
        if (rest.size() < 2 || (rest[1] != '!' && rest[1] != '?')) {
            return {};
        }
        return rest.starts_with(section)  ? "]]>"
               : rest.starts_with("<!--") ? "-->"
               : rest.starts_with("<?")   ? "?>"
                                          : "";
    }

    /// Keeps a section, in which an ampersand is one, and leaves the others out. Gives where the
    /// next "<" stands; what never ends goes with all that follows.
    std::size_t passOpaque(std::size_t at, std::string_view end) {
        const bool kept = end.front() == ']';
        const std::size_t found = m_text.find(end, at + (kept ? section.size() : 2));
        if (found == nowhere) {
            copyUntil(at);
            m_copied = m_text.size();
            return m_text.size();
        }
        const std::size_t after = found + end.size();
        if (!kept) {
            replace(at, after - at, {});
        }
        const std::size_t next = std::min(m_text.find('<', after), m_text.size());
        mendReferences(after, next);
        return next;
    }

    bool hasTooManyAttributes(std::size_t at, std::size_t end) const {
        char quote = '\0';
        int attributes = 0;
        for (; at < end && attributes <= mostAttributes; ++at) {
            const char c = m_text[at];
            if (quote != '\0') {
                quote = c == quote ? '\0' : quote;
            } else if (c == '"' || c == '\'') {
                quote = c;
                ++attributes;
            } else if (c == '>') {
                break;
            }
        }
        return attributes > mostAttributes;
    }

    void mendReferences(std::size_t from, std::size_t end) {
        while (from < end) {
            const std::string_view part = m_text.substr(from, end - from);
            const std::size_t found = part.find('&');
            if (found == nowhere) {
                return;
            }
            from += found + mendReference(part.substr(found), from + found);
        }
    }

    /// Gives the length of what was looked at.
    std::size_t mendReference(std::string_view text, std::size_t at) {
        for (const std::string_view known : {"&lt;", "&gt;", "&amp;", "&quot;", "&apos;"}) {
            if (text.starts_with(known)) {
                return known.size();
            }
        }
        const auto reference = characterReference(text);
        if (!reference) {
            replace(at, 1, "&amp;");
            return 1;
        }
        // Those a parser must not meet as themselves were written as numbers.
        const char32_t character = reference->character;
        const QByteArray mended =
            character < 0x80 ? "&#" + QByteArray::number(static_cast<uint>(character)) + ';'
                             : QString::fromUcs4(&character, 1).toUtf8();
        replace(at, reference->length, viewOf(mended));
        return reference->length;
    }

    void replace(std::size_t at, std::size_t length, std::string_view with) {
        copyUntil(at);
        m_out.append(with.data(), static_cast<qsizetype>(with.size()));
        m_copied = at + length;
    }

    void copyUntil(std::size_t end) {
        m_out.append(m_text.data() + m_copied, static_cast<qsizetype>(end - m_copied));
        m_copied = end;
    }

    std::string_view m_text;
    std::size_t m_copied = 0;
    QByteArray m_out;
};

} // namespace

QByteArray feedDocument(QByteArrayView bytes, QByteArrayView contentType) {
    QByteArray text = decoded(bytes, contentType);
    dropForeignCharacters(text);
    return Mender(fromRoot(viewOf(text))).mended();
}

} // namespace vorle
