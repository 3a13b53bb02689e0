#include "search/HtmlScan.h"

#include <QChar>

#include <algorithm>

namespace vorle::html {

namespace {

constexpr std::size_t nowhere = std::string_view::npos;

char lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c | 0x20) : c; }

bool isQuote(char c) { return c == '"' || c == '\''; }

/// Where `word` (lower case) that begins at `at` ends, or nowhere.
std::size_t wordEnd(std::string_view text, std::size_t at, std::string_view word) {
    for (const char wanted : word) {
        const std::string_view rest = text.substr(std::min(at, text.size()));
        if (!rest.empty() && lower(rest.front()) == wanted) {
            ++at;
        } else if (wanted == 's' && rest.starts_with("\u017F")) { // the long s
            at += 2;
        } else if (wanted == 'k' && rest.starts_with("\u212A")) { // the kelvin sign
            at += 3;
        } else {
            return nowhere;
        }
    }
    return at;
}

/// The code point at `at` in valid UTF-8.
char32_t codePointAt(std::string_view text, std::size_t at) {
    const auto lead = static_cast<unsigned char>(text[at]);
    if (lead < 0x80) {
        return lead;
    }
    const int length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
    char32_t point = lead & (0xFF >> (length + 1));
    for (int i = 1; i < length && at + i < text.size(); ++i) {
        point = point << 6 | (static_cast<unsigned char>(text[at + i]) & 0x3F);
    }
    return point;
}

/// Whether a word that ends before `at` goes on there. Combining marks and invisible format
/// characters never stand at a word's edge.
bool wordGoesOn(std::string_view text, std::size_t at) {
    if (at >= text.size()) {
        return false;
    }
    switch (QChar::category(codePointAt(text, at))) {
    case QChar::Letter_Uppercase:
    case QChar::Letter_Lowercase:
    case QChar::Letter_Titlecase:
    case QChar::Letter_Modifier:
    case QChar::Letter_Other:
    case QChar::Mark_NonSpacing:
    case QChar::Mark_SpacingCombining:
    case QChar::Mark_Enclosing:
    case QChar::Number_DecimalDigit:
    case QChar::Number_Letter:
    case QChar::Punctuation_Connector:
    case QChar::Other_Format:
        return true;
    default:
        return false;
    }
}

struct Range {
    std::size_t begin = nowhere;
    std::size_t end = nowhere;

    bool found() const { return begin != nowhere; }
};

/// "<TAG" at or after `from`.
Range findOpening(std::string_view page, std::size_t from, std::string_view tag, NameEnd nameEnd) {
    for (auto at = page.find('<', from); at != nowhere; at = page.find('<', at + 1)) {
        const std::size_t end = wordEnd(page, at + 1, tag);
        if (end != nowhere && (nameEnd == NameEnd::Anywhere || !wordGoesOn(page, end))) {
            return {at, end};
        }
    }
    return {};
}

/// "</TAG>" at or after `from`.
Range findClosing(std::string_view page, std::size_t from, std::string_view tag) {
    for (auto at = page.find('<', from); at != nowhere; at = page.find('<', at + 1)) {
        if (at + 1 < page.size() && page[at + 1] == '/') {
            const std::size_t end = wordEnd(page, at + 2, tag);
            if (end < page.size() && page[end] == '>') {
                return {at, end + 1};
            }
        }
    }
    return {};
}

/// Whether `word` ends before `end` without beginning before `from`.
bool endsWithWord(std::string_view page, std::size_t from, std::size_t end, std::string_view word) {
    return end - from >= word.size() &&
           std::equal(word.begin(), word.end(), page.begin() + (end - word.size()),
                      [](char wanted, char c) { return wanted == lower(c); });
}

/// What lies between "<meta" and the next ">", as far as the two patterns look at it.
class MetaTag {
public:
    MetaTag(std::string_view page, std::size_t begin)
        : m_page(page), m_begin(begin), m_end(std::min(page.find('>', begin), page.size())) {
        eachAttribute(begin + 1, m_end, [this](std::size_t begins, std::size_t equals) {
            if (endsWithWord(m_page, begins, equals, "content")) {
                const std::size_t value = equals + 2;
                m_contents.push_back({equals - 7, value, m_page.find_first_of("\"'", value)});
            } else {
                m_names.push_back(equals);
            }
        });
    }

    std::size_t end() const { return m_end; }

    /// The value of a content that follows the key.
    std::optional<std::string_view> valueAfter(std::string_view key) const {
        // Greed takes the last content that has a closing quote: the last but one has one for
        // sure, namely the quote that opens the last.
        auto content = m_contents.rbegin();
        if (content != m_contents.rend() && content->close == nowhere) {
            ++content;
        }
        if (content == m_contents.rend()) {
            return std::nullopt;
        }
        for (const std::size_t equals : m_names) {
            const std::size_t keyEnd = endOfKey(equals, key);
            if (keyEnd != nowhere) {
                // The first one leaves the most room.
                return keyEnd + 1 <= content->word ? std::optional(value(*content)) : std::nullopt;
            }
        }
        return std::nullopt;
    }

    /// The value of a content that the key follows.
    std::optional<std::string_view> valueBefore(std::string_view key) const {
        if (m_contents.empty()) {
            return std::nullopt;
        }
        // A value may hold ">"; then the key stands between it and the next ">".
        const Content &last = m_contents.back();
        if (last.close != nowhere && last.close > m_end) {
            const std::size_t end = std::min(m_page.find('>', last.close), m_page.size());
            bool follows = false;
            eachAttribute(last.close + 2, end, [&](std::size_t begins, std::size_t equals) {
                follows = follows || (!endsWithWord(m_page, begins, equals, "content") &&
                                      endOfKey(equals, key) != nowhere);
            });
            if (follows) {
                return value(last);
            }
        }
        const auto name = std::find_if(m_names.rbegin(), m_names.rend(), [&](std::size_t equals) {
            return endOfKey(equals, key) != nowhere;
        });
        if (name == m_names.rend()) {
            return std::nullopt;
        }
        const std::size_t word =
            *name - (endsWithWord(m_page, m_begin + 1, *name, "property") ? 8 : 4);
        const auto content =
            std::find_if(m_contents.rbegin(), m_contents.rend(), [&](const Content &candidate) {
                return candidate.close < m_end && candidate.close + 2 <= word;
            });
        return content == m_contents.rend() ? std::nullopt : std::optional(value(*content));
    }

private:
    struct Content {
        std::size_t word;  ///< where "content" begins
        std::size_t value; ///< after the opening quote
        std::size_t close; ///< the closing quote, maybe beyond the tag, or nowhere
    };

    /// Calls `visit(from, equals)` for each `content=`, `property=` or `name=` with an opening
    /// quote that begins at or after `from`.
    template <class Visit>
    void eachAttribute(std::size_t from, std::size_t end, Visit visit) const {
        const std::string_view tag = m_page.substr(0, end); // no look beyond it
        for (auto at = tag.find('=', from); at != nowhere; at = tag.find('=', at + 1)) {
            if (at + 1 < end && isQuote(m_page[at + 1]) &&
                (endsWithWord(m_page, from, at, "content") ||
                 endsWithWord(m_page, from, at, "property") ||
                 endsWithWord(m_page, from, at, "name"))) {
                visit(from, at);
            }
        }
    }

    std::size_t endOfKey(std::size_t equals, std::string_view key) const {
        const std::size_t end = wordEnd(m_page, equals + 2, key);
        return end < m_page.size() && isQuote(m_page[end]) ? end + 1 : nowhere;
    }

    std::string_view value(const Content &content) const {
        return m_page.substr(content.value, content.close - content.value);
    }

    std::string_view m_page;
    std::size_t m_begin;
    std::size_t m_end;
    std::vector<Content> m_contents;
    std::vector<std::size_t> m_names; ///< the equals signs
};

/// `text` was cut somewhere: ends it before a blank instead, where neither an entity nor a
/// character can straddle the cut. Without a blank nothing is left.
void endBeforeBlank(std::string &text) {
    const std::size_t blank = text.rfind(' ');
    text.resize(blank == nowhere ? 0 : blank);
}

} // namespace

std::vector<std::optional<std::string_view>> metaValues(std::string_view page,
                                                        std::span<const std::string_view> keys) {
    std::vector<std::optional<std::string_view>> after(keys.size());
    std::vector<std::optional<std::string_view>> before(keys.size());
    for (auto tag = findOpening(page, 0, "meta", NameEnd::Anywhere); tag.found();) {
        // Another "<meta" before the next ">" would see less of the same: the first speaks for
        // all of them.
        const MetaTag meta(page, tag.end);
        for (std::size_t i = 0; i < keys.size(); ++i) {
            if (!after[i]) {
                after[i] = meta.valueAfter(keys[i]);
            }
            if (!before[i]) {
                before[i] = meta.valueBefore(keys[i]);
            }
        }
        tag = findOpening(page, meta.end(), "meta", NameEnd::Anywhere);
    }
    for (std::size_t i = 0; i < keys.size(); ++i) {
        if (!after[i]) {
            after[i] = before[i];
        }
    }
    return after;
}

std::optional<std::string_view> firstElement(std::string_view page, std::string_view tag,
                                             NameEnd nameEnd) {
    // When the first opening tag finds no end, no later one does.
    const Range opening = findOpening(page, 0, tag, nameEnd);
    const std::size_t inside = opening.found() ? page.find('>', opening.end) : nowhere;
    if (inside == nowhere) {
        return std::nullopt;
    }
    const Range closing = findClosing(page, inside + 1, tag);
    if (!closing.found()) {
        return std::nullopt;
    }
    return page.substr(inside + 1, closing.begin - inside - 1);
}

void removeElements(std::string &page, std::string_view tag) {
    std::size_t written = 0;
    std::size_t read = 0;
    const auto keepUpTo = [&](std::size_t end) {
        std::copy(page.data() + read, page.data() + end, page.data() + written);
        written += end - read;
    };
    while (true) {
        const Range opening = findOpening(page, read, tag, NameEnd::WordBoundary);
        const Range closing = opening.found() ? findClosing(page, opening.end, tag) : Range{};
        if (!closing.found()) {
            break; // an element that never closes stays, and so does all behind it
        }
        keepUpTo(opening.begin);
        read = closing.end;
    }
    keepUpTo(page.size());
    page.resize(written);
}

Stripped withoutTags(std::string_view page, std::size_t mostBytes) {
    Stripped out;
    std::size_t at = 0;
    while (out.text.size() < mostBytes) {
        const std::size_t tag = page.find('<', at);
        const std::size_t end = tag == nowhere ? nowhere : page.find('>', tag + 1);
        const bool empty = end == tag + 1; // "<>" is text
        const std::size_t textEnd = end == nowhere ? page.size() : empty ? end : tag;
        const std::string_view text = page.substr(at, textEnd - at);
        out.text += text.substr(0, mostBytes);
        if (text.size() > mostBytes) {
            break;
        }
        if (end == nowhere) {
            return out;
        }
        if (!empty) {
            out.text += ' ';
        }
        at = empty ? end : end + 1;
    }
    out.whole = false;
    endBeforeBlank(out.text);
    return out;
}

Stripped beginning(std::string_view text, std::size_t mostBytes) {
    Stripped out{std::string(text.substr(0, mostBytes)), text.size() <= mostBytes};
    if (!out.whole) {
        endBeforeBlank(out.text);
    }
    return out;
}

} // namespace vorle::html
