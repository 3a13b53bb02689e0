#include "search/web/PicturePage.h"

#include "search/web/AttributeReader.h"
#include "search/web/HtmlWord.h"
#include "search/web/MetaTag.h"

#include <algorithm>
#include <array>

namespace vorle::html {

namespace {

constexpr std::size_t searchedCharacters = 300'000;

std::string_view firstCodePoints(std::string_view text, std::size_t count) {
    std::size_t at = 0;
    for (; at < text.size(); ++at) {
        const bool begins = (static_cast<unsigned char>(text[at]) & 0xC0) != 0x80;
        if (begins && count-- == 0) {
            break;
        }
    }
    return text.substr(0, at);
}

bool holds(std::string_view text, std::string_view word) {
    for (std::size_t at = 0; at + word.size() <= text.size(); ++at) {
        if (wordEnd(text, at, word) != nowhere) {
            return true;
        }
    }
    return false;
}

/// What is wanted of a link element.
struct LinkTag {
    std::size_t end = nowhere; ///< where its reading ended
    std::string_view rel;
    std::string_view href;
};

/// Reads the attributes behind "<link", values in quotes alone.
LinkTag readLink(std::string_view page, std::size_t at) {
    LinkTag link;
    AttributeReader attributes(page, at);
    while (const auto attribute = attributes.next()) {
        if (!attribute->quoted) {
            continue;
        }
        if (link.rel.empty() && attribute->is("rel")) {
            link.rel = attribute->value;
        } else if (link.href.empty() && attribute->is("href")) {
            link.href = attribute->value;
        }
    }
    link.end = attributes.position();
    return link;
}

/// The first values found, in the order they are preferred in.
class Found {
public:
    void meta(const MetaTag &tag) {
        for (std::size_t i = 0; i < keys.size(); ++i) {
            keep(m_after[i], tag.valueAfter(keys[i]).value_or(std::string_view()));
            keep(m_before[i], tag.valueBefore(keys[i]).value_or(std::string_view()));
        }
    }

    void link(const LinkTag &tag) {
        for (std::size_t i = 0; i < rels.size(); ++i) {
            if (m_links[i].empty() && holds(tag.rel, rels[i])) {
                keep(m_links[i], tag.href);
            }
        }
    }

    std::vector<std::string_view> all() const {
        std::vector<std::string_view> values;
        for (const std::string_view value :
             {m_after[0].empty() ? m_before[0] : m_after[0],
              m_after[1].empty() ? m_before[1] : m_after[1], m_links[0], m_links[1]}) {
            if (!value.empty() && std::ranges::find(values, value) == values.end()) {
                values.push_back(value);
            }
        }
        return values;
    }

private:
    static constexpr std::array<std::string_view, 2> keys{"og:image", "twitter:image"};
    static constexpr std::array<std::string_view, 2> rels{"apple-touch-icon", "icon"};

    static void keep(std::string_view &first, std::string_view value) {
        if (first.empty()) {
            first = value;
        }
    }

    std::array<std::string_view, 2> m_after;
    std::array<std::string_view, 2> m_before;
    std::array<std::string_view, 2> m_links;
};

} // namespace

std::vector<std::string_view> announcedPictures(std::string_view page) {
    page = firstCodePoints(page, searchedCharacters);
    Found found;
    std::size_t metaEnd = 0;
    std::size_t linkEnd = 0;
    for (auto at = page.find('<'); at != nowhere; at = page.find('<', at + 1)) {
        if (const std::size_t end = wordEnd(page, at + 1, "meta");
            end != nowhere && at >= metaEnd) {
            const MetaTag tag(page, end);
            found.meta(tag);
            metaEnd = tag.end();
        } else if (const std::size_t name = wordEnd(page, at + 1, "link");
                   name != nowhere && at >= linkEnd) {
            const LinkTag tag = readLink(page, name);
            found.link(tag);
            linkEnd = tag.end;
        }
    }
    return found.all();
}

} // namespace vorle::html
