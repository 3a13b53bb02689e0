#include "search/feeds/FeedElements.h"

#include "base/WebLink.h"

#include <algorithm>
#include <array>

namespace vorle {

namespace {

bool sameWord(std::string_view word, std::string_view lowerCase) {
    return std::ranges::equal(word, lowerCase, {}, [](char c) {
        return c >= 'A' && c <= 'Z' ? static_cast<char>(c | 0x20) : c;
    });
}

/// libxml2 leaves an ampersand as a reference, for whoever writes the tag out again.
std::string unescaped(std::string_view value) {
    std::string text;
    text.reserve(value.size());
    for (std::size_t at = 0; at < value.size();) {
        const bool escaped = value.substr(at).starts_with("&#38;");
        text += value[at];
        at += escaped ? 5 : 1;
    }
    return text;
}

} // namespace

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

Role roleOf(std::string_view name, Vocabulary vocabulary) {
    struct Entry {
        std::string_view name;
        Role role;
        bool inDublinCore = false;
    };
    static constexpr std::array<Entry, 12> entries{
        {{"title", Role::Title, true},
         {"link", Role::Link},
         {"description", Role::Summary},
         {"summary", Role::Summary},
         {"encoded", Role::Content},
         {"content", Role::Content},
         {"pubdate", Role::Published},
         {"published", Role::Published},
         {"date", Role::Dated, true},
         {"updated", Role::Updated},
         {"issued", Role::Published}, // Atom 0.3, as the next
         {"modified", Role::Updated}}};
    if (vocabulary == Vocabulary::Other) {
        return Role::None;
    }
    const auto *const found = std::ranges::find_if(
        entries, [&](const Entry &entry) { return sameWord(name, entry.name); });
    const bool known =
        found != entries.end() && (found->inDublinCore || vocabulary != Vocabulary::DublinCore);
    return known ? found->role : Role::None;
}

bool opensItem(std::string_view name, Vocabulary vocabulary) {
    return (vocabulary == Vocabulary::Feed || vocabulary == Vocabulary::Atom) &&
           (sameWord(name, "item") || sameWord(name, "entry"));
}

FeedKind feedKindOf(std::string_view rootName) {
    if (sameWord(rootName, "feed")) {
        return FeedKind::Atom;
    }
    const bool rss =
        sameWord(rootName, "rss") || sameWord(rootName, "rdf") || sameWord(rootName, "channel");
    return rss ? FeedKind::Rss : FeedKind::None;
}

LinkRank rankOf(std::string_view relation, std::string_view type) {
    if (relation.empty() || relation == "alternate") {
        return type.empty() || contains(type, "html") ? PageLink : OtherPageLink;
    }
    if (relation == "self" || relation == "edit" || relation == "replies") {
        return SelfLink;
    }
    return relation == "enclosure" ? FileLink : RelatedLink;
}

std::string Attributes::value(std::string_view name, std::string_view prefix) const {
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

QString absoluteLink(std::string_view link) {
    const QByteArrayView trimmed =
        QByteArrayView(link.data(), static_cast<qsizetype>(link.size())).trimmed();
    const bool plain = std::ranges::all_of(trimmed, [](char c) {
        return c > ' ' && c < 0x7F && c != '"' && c != '<' && c != '>' && c != '`';
    });
    const bool absolute = trimmed.startsWith("http://") || trimmed.startsWith("https://");
    if (!plain || !absolute || trimmed.size() <= 8 ||
        trimmed.size() > WebLink::longest(WebLink::Giver::Stranger)) {
        return {};
    }
    const qsizetype path = trimmed.indexOf('/', 8);
    const QByteArrayView host = path < 0 ? trimmed : trimmed.first(path);
    return host.contains('@') ? QString() : QString::fromLatin1(trimmed);
}

QString resolvedLink(std::string_view link, const QUrl &base) {
    const QByteArray bytes = QByteArray(link.data(), static_cast<qsizetype>(link.size())).trimmed();
    const bool words = bytes.contains(' ') && bytes.left(4).toLower() != "http";
    if (bytes.isEmpty() || words) {
        return {};
    }
    const auto resolved = WebLink::resolved(QString::fromUtf8(bytes), base);
    return resolved ? resolved->text() : QString();
}

} // namespace vorle
