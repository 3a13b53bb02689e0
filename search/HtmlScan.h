#pragma once

#include <QByteArray>

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

/// Scanners over the UTF-8 bytes of a web page. Each gives exactly what a regular expression
/// would, named beside it, yet takes time linear in the page whatever the page holds: tags that
/// never close, a million "<", values without a closing quote. Matching ignores case as Unicode
/// does ("ſ" is an "s"). Pure, any thread.
namespace vorle::html {

/// The value of the first meta element for each of `keys` (lower case), in their order, written
/// with the key first, else with the content first:
///     <meta[^>]+(?:property|name)=["']KEY["'][^>]+content=["']([^"']*)["']
///     <meta[^>]+content=["']([^"']*)["'][^>]+(?:property|name)=["']KEY["']
/// The views point into `page`.
std::vector<std::optional<std::string_view>> metaValues(std::string_view page,
                                                        std::span<const std::string_view> keys);

/// How the name of an opening tag ends.
enum class NameEnd {
    Anywhere,    ///< "<titles>" opens a title
    WordBoundary ///< "<articles>" opens no article, "<article-list>" does
};

/// What stands in the first element `tag`: <TAG[^>]*>([\s\S]*?)</TAG>, with \b after the name when
/// asked for. The view points into `page`.
std::optional<std::string_view> firstElement(std::string_view page, std::string_view tag,
                                             NameEnd nameEnd);

/// Takes out every element `tag` with its content: <TAG\b[\s\S]*?</TAG>
void removeElements(std::string &page, std::string_view tag);

struct Stripped {
    std::string text;
    bool whole = true; ///< the end of the page was reached
};

/// The page with a blank in place of each tag (<[^>]+>), up to about `mostBytes` of it; when it is
/// not whole, it ends before a blank.
Stripped withoutTags(std::string_view page, std::size_t mostBytes);

/// The first `mostBytes` of a text as they are, under the same rule.
Stripped beginning(std::string_view text, std::size_t mostBytes);

} // namespace vorle::html
