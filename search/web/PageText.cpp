#include "search/web/PageText.h"

#include "base/Text.h"
#include "search/web/Charset.h"
#include "search/web/HtmlDocument.h"

#include <algorithm>
#include <array>

namespace vorle {

namespace {

/// The stripped text that is looked at first: more than twice what is kept, so that more is seldom
/// needed.
constexpr std::size_t firstWindow = 20'000;

std::string_view bytesOf(const QByteArray &bytes) {
    return {bytes.constData(), static_cast<std::size_t>(bytes.size())};
}

QString textOf(std::string_view utf8) {
    return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

/// Tidies blanks: runs of blanks, tabs and no-break blanks become one blank, blank lines become
/// one empty line, both ends are trimmed. That is, [ \t\u00A0]+ gives " ", then
/// \s*\n\s*(\n\s*)+ gives "\n\n": a run of blanks that holds two line feeds or more.
QString tidied(QStringView text) {
    const QStringView inner = trimmed(text);
    const auto blankAt = [&](qsizetype at) {
        const char16_t c = inner[at].unicode();
        return (c <= u' ' || c >= 0x80) && isBlank(c);
    };
    QString out;
    out.reserve(inner.size());
    for (qsizetype at = 0; at < inner.size();) {
        qsizetype end = at;
        if (!blankAt(at)) { // words up to a run of blanks; the last character is none
            while (end < inner.size() &&
                   (!blankAt(end) || (inner[end] == u' ' && !blankAt(end + 1)))) {
                ++end;
            }
            out += inner.sliced(at, end - at);
        } else {
            while (blankAt(end)) {
                ++end;
            }
            const QStringView run = inner.sliced(at, end - at);
            if (run.count(u'\n') >= 2) {
                out += u"\n\n";
            } else {
                bool afterBlank = false;
                for (const QChar c : run) {
                    const bool plain = c == u' ' || c == u'\t' || c == u'\u00A0';
                    if (!plain || !afterBlank) {
                        out += plain ? QChar(u' ') : c;
                    }
                    afterBlank = plain;
                }
            }
        }
        at = end;
    }
    return out;
}

/// The first `characters` of a text; fewer when those take more bytes than any writing does.
QStringView bounded(QStringView text, qsizetype characters) {
    const QStringView kept = firstCharacters(text, characters);
    const QStringView fitting = utf8Prefix(kept, characters * bytesPerCharacter);
    // What was cut may have been cut within a character.
    return fitting.size() == kept.size() ? kept
                                         : fitting.chopped(lastCharacters(fitting, 1).size());
}

/// The first maxBodyCharacters of a body. `upTo(n)` gives about its first n bytes; what lies
/// further is looked at only when those hold fewer characters.
template <class UpTo, class Clean>
QString keptText(UpTo upTo, Clean clean) {
    for (std::size_t window = firstWindow;; window *= 4) {
        const html::Beginning piece = upTo(window);
        const QString text = clean(textOf(piece.text));
        const QStringView kept = bounded(text, maxBodyCharacters);
        if (piece.whole || kept.size() < text.size()) {
            return kept.toString();
        }
    }
}

std::optional<QString> line(std::optional<std::string_view> html) {
    if (!html) {
        return std::nullopt;
    }
    const QString text = tidied(decodeEntities(textOf(*html)));
    const QStringView kept = bounded(text, maxLineCharacters);
    return kept.isEmpty() ? std::nullopt : std::optional(kept.toString());
}

bool isReadable(QStringView text) {
    return firstCharacters(text, readableCharacters - 1).size() < text.size();
}

ReadLevel readLevel(PageExtent extent) {
    return extent == PageExtent::Cut ? ReadLevel::Seen : ReadLevel::Full;
}

PageText readPlain(const QByteArray &utf8, PageExtent extent) {
    const QString text =
        keptText([&](std::size_t most) { return html::beginning(bytesOf(utf8), most); },
                 [](const QString &piece) { return tidied(piece); });
    PageText page;
    page.text = text.toUtf8();
    if (isReadable(text)) {
        page.level = readLevel(extent);
    } else {
        page.level = text.isEmpty() ? ReadLevel::None : ReadLevel::Meta;
    }
    return page;
}

void readHead(const html::Document &document, PageText &page) {
    static constexpr std::array<std::string_view, 4> keys{"og:title", "og:description",
                                                          "description", "twitter:description"};
    const auto values = document.metaValues(keys);
    page.title = line(values[0]);
    if (!page.title) {
        page.title = line(document.first(html::Tag::Title));
    }
    for (std::size_t i = 1; i < values.size() && !page.description; ++i) {
        page.description = line(values[i]);
    }
}

QString readBody(html::Document &document) {
    using html::Tag;
    for (const Tag noise : {Tag::Script, Tag::Style, Tag::Noscript, Tag::Svg, Tag::Nav, Tag::Header,
                            Tag::Footer, Tag::Aside, Tag::Form, Tag::Template}) {
        document.remove(noise);
    }
    auto body = document.first(Tag::Article);
    if (!body) {
        body = document.first(Tag::Main);
    }
    html::Stripper stripper(body.value_or(document.text()));
    return keptText([&](std::size_t most) { return stripper.upTo(most); },
                    [](const QString &piece) { return tidied(decodeEntities(piece)); });
}

PageText readHtml(const QByteArray &utf8, PageExtent extent) {
    PageText page;
    html::Document document(bytesOf(utf8));
    readHead(document, page);
    const QString body = readBody(document);
    if (isReadable(body)) {
        page.text = body.toUtf8();
        page.level = readLevel(extent);
    } else if (page.title || page.description) {
        page.level = ReadLevel::Meta;
    }
    return page;
}

/// Types that name no text. Of any other the bytes decide: servers send text under many names.
bool isMedia(const QByteArray &type) {
    static constexpr std::array<QByteArrayView, 5> families{"image/", "audio/", "video/", "font/",
                                                            "model/"};
    static constexpr std::array<QByteArrayView, 4> packed{"pdf", "zip", "compressed",
                                                          "officedocument"};
    const QByteArrayView name =
        QByteArrayView(type).first(std::find(type.begin(), type.end(), ';') - type.begin());
    return std::ranges::any_of(families,
                               [&](QByteArrayView family) { return name.startsWith(family); }) ||
           (name.startsWith("application/") &&
            std::ranges::any_of(packed, [&](QByteArrayView word) { return name.contains(word); }));
}

} // namespace

PageText extractPage(QByteArrayView bytes, QByteArrayView contentType, PageExtent extent) {
    if (bytes.size() > maxPageBytes) {
        bytes = bytes.first(maxPageBytes);
        extent = PageExtent::Cut;
    }
    const QByteArray type = contentType.toByteArray().trimmed().toLower();
    if (isMedia(type) || bytes.startsWith("%PDF-")) {
        return {};
    }
    const std::optional<QByteArray> text = decodeText(bytes, contentType);
    if (!text) {
        return {};
    }
    const bool plain = type.startsWith("text/plain") || type.startsWith("text/markdown");
    return plain ? readPlain(*text, extent) : readHtml(*text, extent);
}

} // namespace vorle
