#include "search/feeds/FeedDocument.h"

#include "search/feeds/FeedMender.h"
#include "search/web/AttributeReader.h"
#include "search/web/Charset.h"
#include "search/web/HtmlWord.h"

#include <QString>

#include <algorithm>
#include <string_view>

namespace vorle {

namespace {

using html::nowhere;

std::string_view viewOf(QByteArrayView bytes) {
    return {bytes.data(), static_cast<std::size_t>(bytes.size())};
}

/// The encoding the XML declaration names, in lower case.
QByteArray declaredEncoding(QByteArrayView bytes) {
    constexpr qsizetype searched = 1'024;
    constexpr std::string_view opening = "<?xml";
    const std::string_view head = viewOf(bytes.first(std::min(bytes.size(), searched)));
    const std::size_t start = head.find(opening);
    const std::size_t end = start == nowhere ? nowhere : head.find("?>", start);
    if (end == nowhere) {
        return {};
    }
    html::AttributeReader attributes(head.substr(0, end), start + opening.size());
    while (const auto attribute = attributes.next()) {
        if (attribute->is("encoding") && attribute->quoted) {
            return QByteArrayView(attribute->value).toByteArray().trimmed().toLower();
        }
    }
    return {};
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
        return QByteArray::fromRawData(bytes.data(), bytes.size());
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
    const auto isControl = [](quint8 c) { return c < 0x20 && c != '\t' && c != '\n' && c != '\r'; };
    quint8 suspicious = 0;
    for (const char c : std::as_const(text)) { // no early way out: the loop is vectorised
        const auto byte = static_cast<quint8>(c);
        suspicious =
            static_cast<quint8>(suspicious | quint8(isControl(byte)) | quint8(byte == 0xEF));
    }
    if (suspicious == 0) {
        return;
    }
    char *const data = text.data();
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (isControl(static_cast<quint8>(data[i]))) {
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

} // namespace

QByteArray feedDocument(QByteArrayView bytes, QByteArrayView contentType) {
    QByteArray text = decoded(bytes, contentType);
    dropForeignCharacters(text);
    QByteArray document = mendedXml(fromRoot(viewOf(text)));
    const bool ofText = !document.isEmpty() && document.constData() >= text.constData() &&
                        document.constData() < text.constData() + text.size();
    if (ofText && text.constData() != bytes.data()) {
        document = QByteArray(document.constData(), document.size()); // `text` ends here
    }
    return document;
}

} // namespace vorle
