#pragma once

/// Characters of formats whose letters are those of ASCII (HTML, feeds, dates), whatever the
/// locale. Any other byte is none of these and stays as it is.
namespace vorle::ascii {

constexpr bool isDigit(char c) { return c >= '0' && c <= '9'; }

/// In lower case.
constexpr char lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c | 0x20) : c; }

constexpr bool isLetter(char c) { return lower(c) >= 'a' && lower(c) <= 'z'; }

/// A blank, a tab or any end of a line.
constexpr bool isSpace(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

} // namespace vorle::ascii
