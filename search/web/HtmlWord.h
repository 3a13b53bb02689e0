#pragma once

#include "base/Ascii.h"

#include <algorithm>
#include <cstddef>
#include <string_view>

/// Words in the bytes of a web page, which are valid UTF-8.
namespace vorle::html {

inline constexpr std::size_t nowhere = std::string_view::npos;

using ascii::lower;

inline bool isQuote(char c) { return c == '"' || c == '\''; }

/// Where `word` (in lower case) ends that begins at `at` in any case, or nowhere. Case is ignored
/// as Unicode does: the long s is an "s", the kelvin sign a "k".
inline std::size_t wordEnd(std::string_view text, std::size_t at, std::string_view word) {
    for (const char wanted : word) {
        if (at < text.size() && lower(text[at]) == wanted) {
            ++at;
        } else if (wanted == 's' && text.substr(std::min(at, text.size())).starts_with("\u017F")) {
            at += 2;
        } else if (wanted == 'k' && text.substr(std::min(at, text.size())).starts_with("\u212A")) {
            at += 3;
        } else {
            return nowhere;
        }
    }
    return at;
}

} // namespace vorle::html
