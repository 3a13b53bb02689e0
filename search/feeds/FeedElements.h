#pragma once

#include <QString>
#include <QUrl>

#include <libxml/parser.h>

#include <string>
#include <string_view>

/// What the tags of a feed say, whatever prefixes and habits its author has. Pure, any thread.
namespace vorle {

inline std::string_view viewOf(const xmlChar *text) {
    return text == nullptr ? std::string_view() : reinterpret_cast<const char *>(text);
}

inline bool contains(std::string_view text, std::string_view part) {
    return text.find(part) != std::string_view::npos;
}

/// What an element's prefix and namespace make of it.
enum class Vocabulary { Feed, Atom, DublinCore, Content, Other };

Vocabulary vocabularyOf(std::string_view prefix, std::string_view uri);

/// What an element directly inside an item gives.
enum class Role { None, Title, Link, Summary, Content, Published, Dated, Updated };
inline constexpr std::size_t roleCount = 8;

/// The role of the element `name`, its case aside.
Role roleOf(std::string_view name, Vocabulary vocabulary);

/// Whether the element opens an item.
bool opensItem(std::string_view name, Vocabulary vocabulary);

/// What a document's root element makes of it.
enum class FeedKind { None, Rss, Atom };
FeedKind feedKindOf(std::string_view rootName);

/// How much an item's link is one: the lowest wins, the first of equals.
enum LinkRank { TextLink, PageLink, OtherPageLink, RelatedLink, SelfLink, FileLink, NoLink };

LinkRank rankOf(std::string_view relation, std::string_view type);

/// What a start tag carries, as libxml2 hands it over: five pointers an attribute.
class Attributes {
public:
    Attributes(const xmlChar **values, int count) : m_values(values), m_count(count) {}

    /// The value of the attribute `name` (of the "xml" prefix, or of none); empty without one.
    std::string value(std::string_view name, std::string_view prefix = {}) const;

private:
    const xmlChar **m_values;
    int m_count;
};

/// `link` when it is an absolute http(s) address as they should be written, which most are, and no
/// longer than a web link may be; empty otherwise. It may still be no valid one.
QString absoluteLink(std::string_view link);
/// The web link that `link` means beside `base`; empty when it means none.
QString resolvedLink(std::string_view link, const QUrl &base);

} // namespace vorle
