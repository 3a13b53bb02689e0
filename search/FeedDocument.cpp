#include "search/FeedDocument.h"

#include "search/Charset.h"
#include "search/HtmlEntities.h"

#include <QString>

#include <algorithm>
#include <array>
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
        std::size_t end = m_text.size();
        while (at < m_text.size()) { // each turn begins at a "<"
            const std::size_t references = endOfOpaque(at);
            if (references == nowhere) {
                end = at;
                break;
            }
            const std::size_t next =
                std::min(m_text.find('<', std::max(references, at + 1)), m_text.size());
            if (next - at > ordinaryTag && references == at && hasTooManyAttributes(at, next)) {
                end = at;
                break;
            }
            mendReferences(references, next);
            at = next;
        }
        copyUntil(end);
        return std::move(m_out);
    }

private:
    static constexpr std::size_t ordinaryTag = 4'096;
    static constexpr int mostAttributes = 512;

    /// Past the section, comment or instruction at `at`, in which an ampersand is one; `at` when
    /// there is none, nowhere when it never ends.
    std::size_t endOfOpaque(std::size_t at) const {
        struct Opaque {
            std::string_view start;
            std::string_view end;
        };
        static constexpr std::array<Opaque, 3> kinds{
            {{"<![CDATA[", "]]>"}, {"<!--", "-->"}, {"<?", "?>"}}};
        const char second = at + 1 < m_text.size() ? m_text[at + 1] : '\0';
        if (second != '!' && second != '?') {
            return at;
        }
        const std::string_view rest = m_text.substr(at);
        for (const Opaque &kind : kinds) {
            if (rest.starts_with(kind.start)) {
                const std::size_t end = m_text.find(kind.end, at + kind.start.size());
                return end == nowhere ? nowhere : end + kind.end.size();
            }
        }
        return at;
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
        copyUntil(at);
        if (!reference) {
            m_out += "&amp;";
            m_copied = at + 1;
            return 1;
        }
        switch (reference->character) {
        case U'&':
            m_out += "&amp;";
            break;
        case U'<':
            m_out += "&lt;";
            break;
        case U'>':
            m_out += "&gt;";
            break;
        case U'"':
            m_out += "&quot;";
            break;
        case U'\'':
            m_out += "&apos;";
            break;
        default:
            m_out += QString::fromUcs4(&reference->character, 1).toUtf8();
        }
        m_copied = at + reference->length;
        return reference->length;
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
