#include "search/FeedParser.h"

#include "search/FeedDate.h"
#include "search/FeedDocument.h"
#include "search/FeedText.h"

#include <libxml/parser.h>

#include <algorithm>
#include <array>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace vorle {

namespace {

constexpr int deepest = 256;
constexpr int mostNamespaces = 256;
constexpr qsizetype mostItems = 10'000;
constexpr qsizetype titleCharacters = 300;
constexpr qsizetype summaryCharacters = 400;
constexpr std::size_t longestLink = 4'096;

std::string_view viewOf(const xmlChar *text) {
    return text == nullptr ? std::string_view() : reinterpret_cast<const char *>(text);
}

bool sameWord(std::string_view word, std::string_view lowerCase) {
    return std::ranges::equal(word, lowerCase, {}, [](char c) {
        return c >= 'A' && c <= 'Z' ? static_cast<char>(c | 0x20) : c;
    });
}

bool contains(std::string_view text, std::string_view part) {
    return text.find(part) != std::string_view::npos;
}

/// What an element's prefix and namespace make of it.
enum class Vocabulary { Feed, Atom, DublinCore, Content, Other };

Vocabulary vocabularyOf(std::string_view prefix, std::string_view uri) {
    if (prefix.empty() && uri.empty()) {
        return Vocabulary::Feed;
    }
    // A prefix nobody declared means what it usually does.
    const bool undeclared = uri.empty();
    if (contains(uri, "w3.org/2005/Atom") || contains(uri, "purl.org/atom/ns") ||
        (undeclared && prefix.starts_with("atom"))) {
        return Vocabulary::Atom;
    }
    if (contains(uri, "purl.org/dc/") || (undeclared && prefix.starts_with("dc"))) {
        return Vocabulary::DublinCore;
    }
    if (contains(uri, "purl.org/rss/1.0/modules/content") || (undeclared && prefix == "content")) {
        return Vocabulary::Content;
    }
    const bool prefixed = uri == "http://purl.org/rss/1.0/" || (undeclared && prefix == "rss") ||
                          contains(uri, "netscape.com/rdf/simple");
    return prefix.empty() || prefixed ? Vocabulary::Feed : Vocabulary::Other;
}

/// The texts of one item, gathered while it is open.
enum Field : std::size_t { Title, Link, Summary, Content, Published, Dated, Updated, FieldCount };

struct GatheredText {
    std::string utf8;
    Markup markup = Markup::Any;
};

constexpr std::array<std::size_t, FieldCount> fieldBytes{2'048, longestLink, 2'048, 2'048,
                                                         64,    64,          64};

/// How much an item's link is one: the lowest wins, the first of equals.
enum LinkRank { TextLink, PageLink, OtherPageLink, RelatedLink, SelfLink, FileLink, NoLink };

LinkRank rankOf(std::string_view relation, std::string_view type) {
    if (relation.empty() || relation == "alternate") {
        return type.empty() || contains(type, "html") ? PageLink : OtherPageLink;
    }
    if (relation == "self" || relation == "edit" || relation == "replies") {
        return SelfLink;
    }
    return relation == "enclosure" ? FileLink : RelatedLink;
}

/// What a start tag carries, as libxml2 hands it over: five pointers an attribute.
class Attributes {
public:
    Attributes(const xmlChar **values, int count) : m_values(values), m_count(count) {}

    /// The value of the attribute `name` (of the "xml" namespace, or of none), blanks trimmed.
    std::string value(std::string_view name, std::string_view prefix = {}) const {
        for (int i = 0; i < m_count; ++i) {
            const xmlChar *const *attribute = m_values + static_cast<std::ptrdiff_t>(i) * 5;
            if ((attribute[1] == nullptr) == prefix.empty() && viewOf(attribute[0]) == name &&
                viewOf(attribute[1]) == prefix) {
                return unescaped({reinterpret_cast<const char *>(attribute[3]),
                                  static_cast<std::size_t>(attribute[4] - attribute[3])});
            }
        }
        return {};
    }

private:
    /// libxml2 leaves an ampersand as a reference, for whoever writes the tag out again.
    static std::string unescaped(std::string_view value) {
        std::string text;
        text.reserve(value.size());
        for (std::size_t at = 0; at < value.size();) {
            const bool escaped = value.substr(at).starts_with("&#38;");
            text += value[at];
            at += escaped ? 5 : 1;
        }
        return text;
    }

    const xmlChar **m_values;
    int m_count;
};

/// The absolute http(s) address `link` means beside `base`; empty when it means none.
QString resolved(std::string_view link, const QUrl &base) {
    const QString text = plainText(link, Markup::None, static_cast<qsizetype>(longestLink));
    const bool blanks = text.contains(u' ');
    const bool absolute = text.startsWith(u"http://") || text.startsWith(u"https://");
    if (absolute && !blanks) {
        return text.size() > 8 ? text : QString();
    }
    if (text.isEmpty() || (blanks && !text.startsWith(u"http"))) {
        return {};
    }
    const QUrl url = base.resolved(QUrl(text));
    const bool http = url.scheme() == u"http" || url.scheme() == u"https";
    return http && !url.host().isEmpty() ? url.toString(QUrl::FullyEncoded) : QString();
}

/// Follows the parser's events and gathers the items.
class Gatherer {
public:
    Gatherer(const QUrl &address, const QString &site) : m_bases{{0, address}}, m_site(site) {}

    void follow(xmlParserCtxtPtr parser) { m_parser = parser; }
    bool isFeed() const { return m_isFeed; }
    QList<FeedItem> takeItems() { return std::move(m_items); }

    static xmlSAXHandler events();

private:
    void start(const xmlChar *name, const xmlChar *prefix, const xmlChar *uri, int namespaces,
               const Attributes &attributes);
    void end();
    void text(std::string_view piece);
    /// After a fault libxml2 leaves out every reference it meets, "&amp;" too, unless told that
    /// the document is well formed.
    void forgive() { m_parser->wellFormed = 1; }

    void startRoot(std::string_view name);
    void startChild(std::string_view name, Vocabulary vocabulary, const Attributes &attributes);
    void startLink(Vocabulary vocabulary, const Attributes &attributes);
    void startText(Field field, Vocabulary vocabulary, const Attributes &attributes);
    void offerLink(LinkRank rank, std::string_view link);
    void gather(Field field);
    void closeItem();

    bool itemIsOpen() const { return m_itemDepth > 0; }

    xmlParserCtxtPtr m_parser = nullptr;
    bool m_isFeed = false;
    bool m_isAtom = false; ///< what has no namespace is Atom's
    int m_depth = 0;
    std::array<int, deepest + 1> m_namespaces{}; ///< in scope, at each depth
    struct Base {
        int depth;
        QUrl address;
    };
    std::vector<Base> m_bases;

    int m_itemDepth = 0; ///< 0 outside of an item
    std::array<GatheredText, FieldCount> m_fields;
    LinkRank m_linkRank = NoLink;
    QString m_link;
    GatheredText *m_gathering = nullptr;
    std::size_t m_gatheringBytes = 0;
    int m_gatheringDepth = 0;
    Field m_gatheringField = Title;

    QString m_site;
    QList<FeedItem> m_items;
};

void Gatherer::start(const xmlChar *name, const xmlChar *prefix, const xmlChar *uri, int namespaces,
                     const Attributes &attributes) {
    forgive();
    if (m_depth == deepest ||
        m_namespaces[static_cast<std::size_t>(m_depth)] + namespaces > mostNamespaces) {
        xmlStopParser(m_parser);
        return;
    }
    ++m_depth;
    m_namespaces[static_cast<std::size_t>(m_depth)] =
        m_namespaces[static_cast<std::size_t>(m_depth - 1)] + namespaces;
    const std::string_view word = viewOf(name);
    if (m_depth == 1) {
        startRoot(word);
    }
    if (const std::string base = attributes.value("base", "xml"); !base.empty()) {
        m_bases.push_back(
            {m_depth, m_bases.back().address.resolved(QUrl(QString::fromStdString(base)))});
    }
    if (m_gathering != nullptr && !isInlineElement(word)) {
        text(" ");
    }
    // Whatever stands deeper (a source, a group of media, a piece of HTML) has texts of its own.
    const bool child = itemIsOpen() && m_depth == m_itemDepth + 1;
    if (!child && !sameWord(word, "item") && !sameWord(word, "entry")) {
        return;
    }
    const Vocabulary vocabulary = vocabularyOf(viewOf(prefix), viewOf(uri));
    const bool opens = (sameWord(word, "item") || sameWord(word, "entry")) &&
                       (vocabulary == Vocabulary::Feed || vocabulary == Vocabulary::Atom);
    if (opens) {
        if (itemIsOpen()) {
            closeItem(); // something in the item before was left open
        }
        m_itemDepth = m_depth;
    } else if (child) {
        startChild(word, vocabulary, attributes);
    }
}

void Gatherer::startRoot(std::string_view name) {
    m_isAtom = sameWord(name, "feed");
    m_isFeed =
        m_isAtom || sameWord(name, "rss") || sameWord(name, "rdf") || sameWord(name, "channel");
    if (!m_isFeed) {
        xmlStopParser(m_parser);
    }
}

void Gatherer::startChild(std::string_view name, Vocabulary vocabulary,
                          const Attributes &attributes) {
    if (vocabulary == Vocabulary::Other) {
        return;
    }
    if (vocabulary == Vocabulary::DublinCore) {
        if (sameWord(name, "date")) {
            gather(Dated);
        } else if (sameWord(name, "title")) {
            startText(Title, vocabulary, attributes);
        }
        return;
    }
    if (sameWord(name, "title")) {
        startText(Title, vocabulary, attributes);
    } else if (sameWord(name, "link")) {
        startLink(vocabulary, attributes);
    } else if (sameWord(name, "description") || sameWord(name, "summary")) {
        startText(Summary, vocabulary, attributes);
    } else if (sameWord(name, "encoded") || sameWord(name, "content")) {
        startText(Content, vocabulary, attributes);
    } else if (sameWord(name, "pubdate") || sameWord(name, "published") ||
               sameWord(name, "issued")) { // the last is Atom 0.3's, as "modified"
        gather(Published);
    } else if (sameWord(name, "date")) {
        gather(Dated);
    } else if (sameWord(name, "updated") || sameWord(name, "modified")) {
        gather(Updated);
    }
}

void Gatherer::startLink(Vocabulary vocabulary, const Attributes &attributes) {
    if (const std::string address = attributes.value("href"); !address.empty()) {
        offerLink(rankOf(attributes.value("rel"), attributes.value("type")), address);
    }
    if (vocabulary == Vocabulary::Feed) {
        gather(Link);
    }
}

void Gatherer::startText(Field field, Vocabulary vocabulary, const Attributes &attributes) {
    gather(field);
    if (m_gathering == nullptr) {
        return;
    }
    const bool isTitle = field == Title;
    Markup markup = isTitle ? Markup::Inline : Markup::Any;
    if (vocabulary == Vocabulary::Atom || (vocabulary == Vocabulary::Feed && m_isAtom)) {
        const std::string type = attributes.value("type");
        if (contains(type, "xhtml") || type == "text" || (isTitle && !contains(type, "html"))) {
            markup = Markup::None;
        }
    }
    m_gathering->markup = markup;
}

void Gatherer::offerLink(LinkRank rank, std::string_view link) {
    if (rank >= m_linkRank || link.size() >= longestLink) {
        return;
    }
    if (QString address = resolved(link, m_bases.back().address); !address.isEmpty()) {
        m_link = std::move(address);
        m_linkRank = rank;
    }
}

/// Gathers the text of the element that starts, unless an earlier one gave the field already.
void Gatherer::gather(Field field) {
    if (m_gathering != nullptr || !m_fields[field].utf8.empty()) {
        return;
    }
    m_gathering = &m_fields[field];
    m_gatheringField = field;
    m_gatheringBytes = fieldBytes[field];
    m_gatheringDepth = m_depth;
}

void Gatherer::text(std::string_view piece) {
    std::string &gathered = m_gathering->utf8;
    const std::size_t room = m_gatheringBytes - gathered.size();
    std::size_t taken = std::min(room, piece.size());
    if (taken < piece.size()) {
        while (taken > 0 && (static_cast<unsigned char>(piece[taken]) & 0xC0U) == 0x80U) {
            --taken; // a character is taken whole
        }
        m_gatheringBytes = gathered.size() + taken;
    }
    gathered.append(piece.substr(0, taken));
}

void Gatherer::end() {
    forgive();
    if (m_gathering != nullptr) {
        if (m_depth <= m_gatheringDepth) {
            GatheredText &gathered = *m_gathering;
            m_gathering = nullptr;
            const bool blank = plainText(gathered.utf8, Markup::None, 1).isEmpty();
            if (m_gatheringField == Link && !blank) {
                offerLink(TextLink, gathered.utf8);
            }
            if (m_gatheringField == Link || blank) {
                gathered.utf8.clear();
            }
        } else {
            text(" ");
        }
    }
    if (m_depth == m_itemDepth) {
        closeItem();
    }
    if (m_bases.size() > 1 && m_bases.back().depth == m_depth) {
        m_bases.pop_back();
    }
    --m_depth;
}

void Gatherer::closeItem() {
    if (m_linkRank != NoLink) {
        const auto plain = [](const GatheredText &text, qsizetype characters) {
            return plainText(text.utf8, text.markup, characters);
        };
        FeedItem item;
        item.site = m_site;
        item.title = plain(m_fields[Title], titleCharacters);
        item.link = std::move(m_link);
        item.summary = plain(m_fields[Summary], summaryCharacters);
        if (item.summary.isEmpty()) {
            item.summary = plain(m_fields[Content], summaryCharacters);
        }
        for (const Field field : {Published, Dated, Updated}) {
            item.date = parseFeedDate(QByteArrayView(m_fields[field].utf8));
            if (item.date) {
                break;
            }
        }
        m_items.append(std::move(item));
    }
    for (GatheredText &field : m_fields) {
        field.utf8.clear();
    }
    m_link.clear();
    m_linkRank = NoLink;
    m_gathering = nullptr;
    m_itemDepth = 0;
    if (m_items.size() == mostItems) {
        xmlStopParser(m_parser);
    }
}

xmlSAXHandler Gatherer::events() {
    xmlSAXHandler handler{};
    handler.initialized = XML_SAX2_MAGIC;
    handler.startElementNs = [](void *self, const xmlChar *name, const xmlChar *prefix,
                                const xmlChar *uri, int namespaces, const xmlChar **,
                                int attributeCount, int, const xmlChar **attributes) {
        static_cast<Gatherer *>(self)->start(name, prefix, uri, namespaces,
                                             Attributes(attributes, attributeCount));
    };
    handler.endElementNs = [](void *self, const xmlChar *, const xmlChar *, const xmlChar *) {
        static_cast<Gatherer *>(self)->end();
    };
    handler.characters = [](void *self, const xmlChar *text, int length) {
        auto *gatherer = static_cast<Gatherer *>(self);
        gatherer->forgive();
        if (gatherer->m_gathering != nullptr) {
            gatherer->text(
                {reinterpret_cast<const char *>(text), static_cast<std::size_t>(length)});
        }
    };
    handler.cdataBlock = handler.characters;
    handler.serror = [](void *, auto) {}; // faults are what is expected
    return handler;
}

} // namespace

std::optional<QList<FeedItem>> parseFeed(QByteArrayView bytes, QByteArrayView contentType,
                                         const QUrl &address, const QString &site) {
    static const bool ready = [] {
        xmlInitParser(); // before any other thread uses the library
        return true;
    }();
    QByteArrayView taken = bytes;
    if (bytes.size() > feedByteLimit) {
        taken = bytes.first(bytes.first(feedByteLimit).lastIndexOf('>') + 1);
    }
    const QByteArray document = feedDocument(taken, contentType);
    if (!ready || document.isEmpty()) {
        return std::nullopt;
    }
    Gatherer gatherer(address, site);
    xmlSAXHandler events = Gatherer::events();
    const std::unique_ptr<xmlParserCtxt, decltype(&xmlFreeParserCtxt)> parser(
        xmlCreatePushParserCtxt(&events, &gatherer, nullptr, 0, nullptr), &xmlFreeParserCtxt);
    if (!parser) {
        return std::nullopt;
    }
    xmlCtxtUseOptions(parser.get(), XML_PARSE_RECOVER | XML_PARSE_NONET);
    gatherer.follow(parser.get());
    xmlParseChunk(parser.get(), document.constData(), static_cast<int>(document.size()), 1);
    return gatherer.isFeed() ? std::optional(gatherer.takeItems()) : std::nullopt;
}

} // namespace vorle
