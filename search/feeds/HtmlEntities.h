#pragma once

#include <optional>
#include <string_view>

namespace vorle {

/// A character reference as it stands in a text.
struct CharacterReference {
    std::size_t length; ///< in bytes, from "&" to ";"
    char32_t character;
};

/// The reference `text` begins with: a number ("&#8217;", "&#x2019;") or one of HTML's names
/// ("&eacute;", those of HTML 4.01 and "&apos;"). Numbers are read as browsers read them: 128 to
/// 159 mean Windows-1252, what is no character of a text means U+FFFD. Nothing when it begins with
/// none. Pure, any thread.
std::optional<CharacterReference> characterReference(std::string_view text);

} // namespace vorle
