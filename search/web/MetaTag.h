#pragma once

#include <optional>
#include <string_view>
#include <vector>

namespace vorle::html {

/// One "<meta" of a page up to the next ">", as far as two patterns look at it:
///     <meta[^>]+(?:property|name)=["']KEY["'][^>]+content=(?:"([^"]*)"|'([^']*)')
///     <meta[^>]+content=(?:"([^"]*)"|'([^']*)')[^>]+(?:property|name)=["']KEY["']
/// A value ends at the quote that opened it: French is full of the other one. The values are what
/// the patterns capture, case ignored, in time linear in the tag (a value may reach beyond it).
/// Another "<meta" before the same ">" would see less of the same: the first speaks for all of
/// them.
class MetaTag {
public:
    /// `begin` is behind "<meta" in `page`, which must outlive the tag and the values.
    MetaTag(std::string_view page, std::size_t begin);

    /// The next ">", or the end of the page.
    std::size_t end() const { return m_end; }
    /// The value of a content that follows the key (in lower case).
    std::optional<std::string_view> valueAfter(std::string_view key) const;
    /// The value of a content that the key follows.
    std::optional<std::string_view> valueBefore(std::string_view key) const;

private:
    struct Content {
        std::size_t word;  ///< where "content" begins
        std::size_t value; ///< after the opening quote
        std::size_t close; ///< the closing quote, maybe beyond the tag, or nowhere
    };
    struct Name {
        std::size_t word; ///< where "property" or "name" begins
        std::size_t key;  ///< after the opening quote
    };

    std::size_t keyEnd(const Name &name, std::string_view key) const;
    bool followedBy(std::string_view key, const Content &content) const;
    std::string_view text(const Content &content) const;

    std::string_view m_page;
    std::size_t m_end;
    std::vector<Content> m_contents;
    std::vector<Name> m_names;
};

} // namespace vorle::html
