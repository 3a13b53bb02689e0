#include "search/feeds/HtmlEntities.h"

#include "search/web/Charset.h"

#include <QString>

#include <libxml/HTMLparser.h>

#include <unordered_map>

namespace vorle {

namespace {

/// libxml2's table by name: its own look-up walks over all of it, and a hostile feed is made of
/// entities.
std::optional<char32_t> named(std::string_view name) {
    static const auto characters = [] {
        constexpr unsigned last = 0x2666; // the diamonds
        std::unordered_map<std::string_view, char32_t> table;
        for (unsigned value = 1; value <= last; ++value) {
            if (const htmlEntityDesc *const entity = htmlEntityValueLookup(value)) {
                table.emplace(entity->name, value);
            }
        }
        return table;
    }();
    const auto found = characters.find(name);
    return found != characters.end() ? std::optional(found->second) : std::nullopt;
}

char32_t asBrowsersRead(char32_t number) {
    if (number >= 0x80 && number <= 0x9F) {
        const char byte = static_cast<char>(number);
        const auto utf8 = decodeText(QByteArrayView(&byte, 1), "charset=windows-1252");
        return utf8 ? QString::fromUtf8(*utf8).front().unicode() : number;
    }
    const bool control = number < 0x20 && number != '\t' && number != '\n' && number != '\r';
    const bool surrogate = number >= 0xD800 && number <= 0xDFFF;
    const bool outside = number == 0xFFFE || number == 0xFFFF || number > 0x10FFFF;
    return control || surrogate || outside ? char32_t(0xFFFD) : number;
}

/// The value of 1 to 8 digits, or nothing.
std::optional<char32_t> numbered(std::string_view digits) {
    const bool hexadecimal = digits.starts_with('x') || digits.starts_with('X');
    digits.remove_prefix(hexadecimal ? 1 : 0);
    if (digits.empty() || digits.size() > 8) {
        return std::nullopt;
    }
    char32_t value = 0;
    for (const char c : digits) {
        const char lower = static_cast<char>(c | 0x20);
        if (c >= '0' && c <= '9') {
            value = value * (hexadecimal ? 16 : 10) + static_cast<char32_t>(c - '0');
        } else if (hexadecimal && lower >= 'a' && lower <= 'f') {
            value = value * 16 + static_cast<char32_t>(lower - 'a' + 10);
        } else {
            return std::nullopt;
        }
    }
    return asBrowsersRead(value);
}

} // namespace

std::optional<CharacterReference> characterReference(std::string_view text) {
    constexpr std::size_t longest = 12; // "&#x0010FFFF;"
    const std::size_t end = text.substr(0, longest).find(';');
    if (!text.starts_with('&') || end == std::string_view::npos || end < 2) {
        return std::nullopt;
    }
    const std::string_view inside = text.substr(1, end - 1);
    const auto character = inside.front() == '#' ? numbered(inside.substr(1)) : named(inside);
    return character ? std::optional(CharacterReference{end + 1, *character}) : std::nullopt;
}

} // namespace vorle
