#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace vorle::html {

/// The elements a reader of pages looks for.
enum class Tag : std::uint8_t {
    Article,
    Aside,
    Footer,
    Form,
    Header,
    Main,
    Meta,
    Nav,
    Noscript,
    Script,
    Style,
    Svg,
    Template,
    Title
};

/// The bytes of a web page, valid UTF-8, and where its tags begin, found in one pass. Each
/// operation gives exactly what a regular expression would, named beside it and case ignored, yet
/// takes time linear in the page whatever the page holds: tags that never close, a million "<".
/// Any thread, one at a time.
class Document {
public:
    /// `page` has less than 4 GB.
    explicit Document(std::string_view page);

    /// For each of `keys` (in lower case) the first value that a meta element gives it, the key
    /// written first, else the first with the content written first (see MetaTag). The views hold
    /// until the next removal.
    std::vector<std::optional<std::string_view>>
    metaValues(std::span<const std::string_view> keys) const;

    /// What stands in the first element of that name: <TAG\b[^>]*>([\s\S]*?)</TAG>, for a title
    /// without the \b. The view holds until the next removal.
    std::optional<std::string_view> first(Tag tag) const;

    /// Takes out every element of that name with its content: <TAG\b[\s\S]*?</TAG>
    void remove(Tag tag);

    std::string_view text() const { return m_page; }

private:
    /// An opening tag up to its name's end, or a whole closing tag.
    struct Mark {
        std::uint32_t begin;
        std::uint8_t length;
        Tag tag;
        bool closing;

        std::size_t end() const { return std::size_t{begin} + length; }
    };

    std::optional<Mark> markAt(std::size_t begin) const;
    void add(const Mark &mark, std::vector<Mark> &marks);
    bool mayHold(Tag tag) const;
    void takeOut(std::span<const Mark> opened, std::span<const Mark> closed);
    void lookAgainAt(std::span<const std::size_t> seams);

    std::string m_page;
    std::vector<Mark> m_marks;   ///< in the page's order
    std::uint32_t m_opening = 0; ///< a bit for each tag that was seen to open
    std::uint32_t m_closing = 0; ///< and to close
};

/// The beginning of a text. One that is not whole ends before a blank, so that neither an entity
/// nor a character is cut.
struct Beginning {
    std::string_view text;
    bool whole;
};

/// About the first `maxBytes` of a text as they are.
Beginning beginning(std::string_view text, std::size_t maxBytes);

/// A page with a blank in place of each tag: <[^>]+>
class Stripper {
public:
    /// `page` must outlive the stripper.
    explicit Stripper(std::string_view page) : m_page(page) {}

    /// About the first `maxBytes` of the text, going on from the call before. The view holds
    /// until the next call.
    Beginning upTo(std::size_t maxBytes);

private:
    std::string_view m_page;
    std::size_t m_at = 0;
    std::string m_text;
};

} // namespace vorle::html
