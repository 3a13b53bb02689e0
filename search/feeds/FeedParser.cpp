#include "search/feeds/FeedParser.h"

#include "base/WebLink.h"
#include "search/feeds/FeedDate.h"
#include "search/feeds/FeedDocument.h"
#include "search/feeds/FeedElements.h"
#include "search/feeds/FeedText.h"

#include <libxml/parser.h>

#include <algorithm>
#include <array>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace vorle {

namespace {

constexpr int maxDepth = 256;
constexpr int maxNamespaces = 256;
/// Different names, of elements, attributes, prefixes and namespaces: libxml2 keeps them all, in
/// lists that grow with them. No vocabulary has a hundredth of that.
constexpr int maxNames = 20'000;
/// Addresses that take more than a look to resolve, in the whole feed.
constexpr int maxResolved = 20'000;
constexpr qsizetype maxItems = 2'000;
constexpr qsizetype titleCharacters = 300;
constexpr qsizetype summaryCharacters = 400;
constexpr std::size_t maxLinkBytes = WebLink::longest(WebLink::Giver::Stranger);
constexpr std::size_t maxBaseBytes = 512;

struct GatheredText {
    std::string utf8;
    Markup markup = Markup::Any;
};

/// How much is gathered of the text that plays a role.
constexpr std::size_t bytesOf(Role role) {
    switch (role) {
    case Role::Link:
        return maxLinkBytes + 8; // one that was cut is still too long
    case Role::Published:
    case Role::Dated:
    case Role::Updated:
        return 64;
    default:
        return 2'048;
    }
}

/// Follows the parser's events and gathers the items.
class Gatherer {
public:
    Gatherer(const QUrl &address, const QString &site) : m_bases{{0, {}, address}}, m_site(site) {}

    void follow(xmlParserCtxtPtr parser) { m_parser = parser; }
    bool isFeed() const { return m_kind != FeedKind::None; }
    QList<FeedItem> takeItems() { return std::move(m_items); }

    static xmlSAXHandler events();

private:
    void start(const xmlChar *name, const xmlChar *prefix, const xmlChar *uri, int namespaces,
               const Attributes &attributes);
    void end(std::string_view name);
    void text(std::string_view piece);

    const QUrl &base();
    void startChild(Role role, Vocabulary vocabulary, const Attributes &attributes);
    void startLink(Vocabulary vocabulary, const Attributes &attributes);
    void startText(Role role, Vocabulary vocabulary, const Attributes &attributes);
    void offerLink(LinkRank rank, std::string_view link);
    void gather(Role role);
    void closeItem();

    GatheredText &textOf(Role role) { return m_texts[static_cast<std::size_t>(role)]; }
    bool itemIsOpen() const { return m_itemDepth > 0; }

    xmlParserCtxtPtr m_parser = nullptr;
    FeedKind m_kind = FeedKind::None;
    int m_depth = 0;
    std::array<int, maxDepth + 1> m_namespaces{}; ///< in scope, at each depth
    struct Base {
        int depth;
        QByteArray written;
        std::optional<QUrl> address; ///< resolved against those before, once it was needed
    };
    std::vector<Base> m_bases;
    int m_resolved = 0;

    int m_itemDepth = 0;                         ///< 0 outside of an item
    std::array<GatheredText, roleCount> m_texts; ///< of the item that is open, by role
    LinkRank m_linkRank = NoLink;
    QString m_link;
    GatheredText *m_gathering = nullptr; ///< the text of the element at m_gatheringDepth
    std::size_t m_gatheringBytes = 0;
    int m_gatheringDepth = 0;
    Role m_gatheringRole = Role::None;

    QString m_site;
    QList<FeedItem> m_items;
};

void Gatherer::start(const xmlChar *name, const xmlChar *prefix, const xmlChar *uri, int namespaces,
                     const Attributes &attributes) {
    if (m_depth == maxDepth || xmlDictSize(m_parser->dict) > maxNames ||
        m_namespaces[static_cast<std::size_t>(m_depth)] + namespaces > maxNamespaces) {
        xmlStopParser(m_parser);
        return;
    }
    ++m_depth;
    m_namespaces[static_cast<std::size_t>(m_depth)] =
        m_namespaces[static_cast<std::size_t>(m_depth - 1)] + namespaces;
    const std::string_view word = viewOf(name);
    if (m_depth == 1) {
        m_kind = feedKindOf(word);
        if (m_kind == FeedKind::None) {
            xmlStopParser(m_parser); // which frees what the attributes point to
            return;
        }
    }
    if (const std::string base = attributes.value("base", "xml");
        !base.empty() && base.size() <= maxBaseBytes) {
        m_bases.push_back({m_depth, QByteArray::fromStdString(base), std::nullopt});
    }
    if (m_gathering != nullptr && !isInlineElement(word)) {
        text(" ");
    }
    // Whatever stands deeper (a source, a group of media, a piece of HTML) has texts of its own.
    const bool child = itemIsOpen() && m_depth == m_itemDepth + 1;
    const bool mayOpen = opensItem(word, Vocabulary::Feed);
    if (!child && !mayOpen) {
        return;
    }
    const Vocabulary vocabulary = vocabularyOf(viewOf(prefix), viewOf(uri));
    if (mayOpen && opensItem(word, vocabulary)) {
        if (itemIsOpen()) {
            closeItem(); // something in the item before was left open
        }
        m_itemDepth = m_depth;
    } else if (child) {
        startChild(roleOf(word, vocabulary), vocabulary, attributes);
    }
}

/// What the links here are relative to. Nested bases add up; one that makes too long a sum is none.
const QUrl &Gatherer::base() {
    std::size_t at = m_bases.size() - 1;
    while (!m_bases[at].address) {
        --at;
    }
    for (++at; at < m_bases.size(); ++at) {
        const QUrl &outer = *m_bases[at - 1].address;
        const QUrl sum = outer.resolved(QUrl(QString::fromUtf8(m_bases[at].written)));
        const bool fits = static_cast<std::size_t>(sum.toString().size()) <= maxBaseBytes;
        m_bases[at].address = fits ? sum : outer;
        ++m_resolved;
    }
    return *m_bases.back().address;
}

void Gatherer::startChild(Role role, Vocabulary vocabulary, const Attributes &attributes) {
    switch (role) {
    case Role::None:
        return;
    case Role::Title:
    case Role::Summary:
    case Role::Content:
        startText(role, vocabulary, attributes);
        return;
    case Role::Link:
        startLink(vocabulary, attributes);
        return;
    case Role::Published:
    case Role::Dated:
    case Role::Updated:
        gather(role);
        return;
    }
}

void Gatherer::startLink(Vocabulary vocabulary, const Attributes &attributes) {
    const std::string address = attributes.value("href");
    if (!address.empty()) {
        offerLink(rankOf(attributes.value("rel"), attributes.value("type")), address);
    }
    // Some write an Atom link as text.
    if (vocabulary == Vocabulary::Feed || address.empty()) {
        gather(Role::Link);
    }
}

void Gatherer::startText(Role role, Vocabulary vocabulary, const Attributes &attributes) {
    gather(role);
    if (m_gathering == nullptr) {
        return;
    }
    const bool isTitle = role == Role::Title;
    Markup markup = isTitle ? Markup::Inline : Markup::Any;
    if (vocabulary == Vocabulary::Atom ||
        (vocabulary == Vocabulary::Feed && m_kind == FeedKind::Atom)) {
        const std::string type = attributes.value("type");
        if (contains(type, "xhtml") || type == "text" || (isTitle && !contains(type, "html"))) {
            markup = Markup::None;
        }
    }
    m_gathering->markup = markup;
}

void Gatherer::offerLink(LinkRank rank, std::string_view link) {
    if (rank >= m_linkRank || link.size() > maxLinkBytes || m_resolved > maxResolved) {
        return;
    }
    QString address = absoluteLink(link);
    if (address.isEmpty()) {
        ++m_resolved;
        address = resolvedLink(link, base());
    }
    if (!address.isEmpty()) {
        m_link = std::move(address);
        m_linkRank = rank;
    }
}

/// Gathers the text of the element that starts, unless an earlier one gave the same already.
void Gatherer::gather(Role role) {
    if (m_gathering != nullptr || !textOf(role).utf8.empty()) {
        return;
    }
    m_gathering = &textOf(role);
    m_gatheringRole = role;
    m_gatheringBytes = bytesOf(role);
    m_gatheringDepth = m_depth;
}

void Gatherer::text(std::string_view piece) {
    std::string &gathered = m_gathering->utf8;
    if (gathered.size() == m_gatheringBytes) {
        return;
    }
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

void Gatherer::end(std::string_view name) {
    if (m_depth == 0) {
        return;
    }
    if (m_gathering != nullptr) {
        if (m_depth <= m_gatheringDepth) {
            GatheredText &gathered = *m_gathering;
            m_gathering = nullptr;
            const bool blank = std::ranges::all_of(
                gathered.utf8, [](char c) { return c == ' ' || (c >= '\t' && c <= '\r'); });
            if (m_gatheringRole == Role::Link && !blank) {
                offerLink(TextLink, gathered.utf8);
            }
            if (m_gatheringRole == Role::Link || blank) {
                gathered.utf8.clear();
            }
        } else if (!isInlineElement(name)) {
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
        item.title = plain(textOf(Role::Title), titleCharacters);
        item.link = std::move(m_link);
        item.summary = plain(textOf(Role::Summary), summaryCharacters);
        if (item.summary.isEmpty()) {
            item.summary = plain(textOf(Role::Content), summaryCharacters);
        }
        for (const Role role : {Role::Published, Role::Dated, Role::Updated}) {
            item.date = parseFeedDate(QByteArrayView(textOf(role).utf8));
            if (item.date) {
                break;
            }
        }
        m_items.append(std::move(item));
    }
    for (GatheredText &gathered : m_texts) {
        gathered.utf8.clear();
    }
    m_link.clear();
    m_linkRank = NoLink;
    m_gathering = nullptr;
    m_itemDepth = 0;
    if (m_items.size() == maxItems) {
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
    handler.endElementNs = [](void *self, const xmlChar *name, const xmlChar *, const xmlChar *) {
        static_cast<Gatherer *>(self)->end(viewOf(name));
    };
    handler.characters = [](void *self, const xmlChar *text, int length) {
        auto *gatherer = static_cast<Gatherer *>(self);
        if (gatherer->m_gathering != nullptr) {
            gatherer->text(
                {reinterpret_cast<const char *>(text), static_cast<std::size_t>(length)});
        }
    };
    handler.cdataBlock = handler.characters;
    handler.ignorableWhitespace = handler.characters; // spares libxml2 telling them apart
    handler.serror = [](void *, auto) {};             // faults are what is expected
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
    if (bytes.size() > maxFeedBytes) {
        taken = bytes.first(bytes.first(maxFeedBytes).lastIndexOf('>') + 1);
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
