#include "search/feeds/Opml.h"

#include "base/Text.h"
#include "base/WebLink.h"
#include "search/feeds/FeedDocument.h"
#include "search/feeds/FeedElements.h"

#include <libxml/parser.h>

#include <QLocale>
#include <QXmlStreamWriter>

#include <algorithm>
#include <memory>
#include <string_view>

namespace vorle {

namespace {

constexpr int maxWords = 2'000; // different ones: libxml2 keeps them all
constexpr qsizetype siteTitleCharacters = 200;

bool isWord(std::string_view name, std::string_view word) {
    return name.size() == word.size() &&
           std::equal(name.begin(), name.end(), word.begin(), [](char a, char b) {
               return (a >= 'A' && a <= 'Z' ? char(a + ('a' - 'A')) : a) == b;
           });
}

/// Follows the parser's events and takes what each outline names.
class Outlines {
public:
    void follow(xmlParserCtxtPtr parser) { m_parser = parser; }
    std::optional<OpmlList> take() {
        return m_isOpml ? std::optional(std::move(m_list)) : std::nullopt;
    }

    static xmlSAXHandler events();

private:
    void start(std::string_view name, int count, const xmlChar **attributes);
    void outline(int count, const xmlChar **attributes);

    xmlParserCtxtPtr m_parser = nullptr;
    bool m_begun = false;
    bool m_isOpml = false;
    OpmlList m_list;
};

void Outlines::start(std::string_view name, int count, const xmlChar **attributes) {
    if (!m_begun) {
        m_begun = true;
        m_isOpml = isWord(name, "opml");
        if (!m_isOpml) {
            xmlStopParser(m_parser);
        }
    } else if (isWord(name, "outline")) {
        if (m_list.sites.size() == maxOpmlSites) {
            m_list.cut = true;
            xmlStopParser(m_parser);
            return;
        }
        outline(count, attributes);
    }
    if (xmlDictSize(m_parser->dict) > maxWords) {
        xmlStopParser(m_parser);
    }
}

/// The parser gives five pointers an attribute: its name, two of its namespace, where its value
/// begins and ends.
void Outlines::outline(int count, const xmlChar **attributes) {
    OpmlSite site;
    bool named = false;
    for (int i = 0; i < count; ++i) {
        const xmlChar **at = attributes + qsizetype(5) * i;
        const std::string_view name = viewOf(at[0]);
        const QString value =
            QString::fromUtf8(reinterpret_cast<const char *>(at[3]), at[4] - at[3]);
        const bool isPage = isWord(name, "htmlurl");
        if (isPage || isWord(name, "xmlurl")) {
            named = named || !value.trimmed().isEmpty();
            if (const auto link = WebLink::from(decodeEntities(value))) {
                (isPage ? site.page : site.feed) = link->text();
            }
        } else if (isWord(name, "title") || (isWord(name, "text") && site.title.isEmpty())) {
            site.title = clampedLine(decodeEntities(value), siteTitleCharacters);
        }
    }
    if (!site.page.isEmpty() || !site.feed.isEmpty()) {
        m_list.sites += site;
    } else if (named) {
        ++m_list.unreadable;
    }
}

xmlSAXHandler Outlines::events() {
    xmlSAXHandler handler{};
    handler.initialized = XML_SAX2_MAGIC;
    handler.startElementNs = [](void *self, const xmlChar *name, const xmlChar *, const xmlChar *,
                                int, const xmlChar **, int count, int, const xmlChar **attributes) {
        static_cast<Outlines *>(self)->start(viewOf(name), count, attributes);
    };
    handler.serror = [](void *, auto) {}; // faults are what is expected
    return handler;
}

} // namespace

std::optional<OpmlList> readOpml(QByteArrayView bytes) {
    static const bool ready = [] {
        xmlInitParser(); // before any other thread uses the library
        return true;
    }();
    if (bytes.size() > maxOpmlBytes) {
        return std::nullopt;
    }
    const QByteArray document = feedDocument(bytes, {});
    if (!ready || document.isEmpty()) {
        return std::nullopt;
    }
    Outlines outlines;
    xmlSAXHandler events = Outlines::events();
    const std::unique_ptr<xmlParserCtxt, decltype(&xmlFreeParserCtxt)> parser(
        xmlCreatePushParserCtxt(&events, &outlines, nullptr, 0, nullptr), &xmlFreeParserCtxt);
    if (!parser) {
        return std::nullopt;
    }
    xmlCtxtUseOptions(parser.get(), XML_PARSE_RECOVER | XML_PARSE_NONET);
    outlines.follow(parser.get());
    xmlParseChunk(parser.get(), document.constData(), static_cast<int>(document.size()), 1);
    return outlines.take();
}

QByteArray writeOpml(const QList<OpmlSite> &sites, const QDateTime &now) {
    QByteArray bytes;
    QXmlStreamWriter xml(&bytes);
    xml.setAutoFormatting(true);
    xml.setAutoFormattingIndent(2);
    xml.writeStartDocument();
    xml.writeStartElement(QStringLiteral("opml"));
    xml.writeAttribute(QStringLiteral("version"), QStringLiteral("2.0"));
    xml.writeStartElement(QStringLiteral("head"));
    xml.writeTextElement(QStringLiteral("title"), QStringLiteral("vorle"));
    xml.writeTextElement(
        QStringLiteral("dateCreated"),
        QLocale::c().toString(now.toUTC(), QStringLiteral("ddd, dd MMM yyyy HH:mm:ss")) +
            QStringLiteral(" GMT"));
    xml.writeEndElement();
    xml.writeStartElement(QStringLiteral("body"));
    for (const OpmlSite &site : sites) {
        const QString title = site.title.isEmpty() ? site.page : site.title;
        xml.writeStartElement(QStringLiteral("outline"));
        xml.writeAttribute(QStringLiteral("type"), QStringLiteral("rss"));
        xml.writeAttribute(QStringLiteral("text"), title);
        xml.writeAttribute(QStringLiteral("title"), title);
        if (!site.page.isEmpty()) {
            xml.writeAttribute(QStringLiteral("htmlUrl"), site.page);
        }
        xml.writeAttribute(QStringLiteral("xmlUrl"), site.feed.isEmpty() ? site.page : site.feed);
        xml.writeEndElement();
    }
    xml.writeEndElement();
    xml.writeEndElement();
    xml.writeEndDocument();
    return bytes;
}

} // namespace vorle
