#include "search/web/MetaTag.h"

#include "search/web/HtmlWord.h"

#include <algorithm>

namespace vorle::html {

namespace {

/// Whether `word` ends before `end` without beginning before `from`.
bool endsWithWord(std::string_view page, std::size_t from, std::size_t end, std::string_view word) {
    return end - from >= word.size() &&
           std::equal(word.begin(), word.end(), page.begin() + (end - word.size()),
                      [](char wanted, char c) { return wanted == lower(c); });
}

/// Calls `visit(word, value)` for each of `words` that begins at or after `from` and is followed
/// by an equals sign and a quote before `end`.
template <class Visit>
void eachAttribute(std::string_view page, std::size_t from, std::size_t end,
                   std::initializer_list<std::string_view> words, Visit visit) {
    const std::string_view tag = page.substr(0, end); // no look beyond it
    for (auto at = tag.find('=', from); at != nowhere; at = tag.find('=', at + 1)) {
        if (at + 1 == end || !isQuote(tag[at + 1])) {
            continue;
        }
        for (const std::string_view word : words) {
            if (endsWithWord(tag, from, at, word)) {
                visit(at - word.size(), at + 2);
            }
        }
    }
}

} // namespace

MetaTag::MetaTag(std::string_view page, std::size_t begin)
    : m_page(page), m_end(std::min(page.find('>', begin), page.size())) {
    const std::size_t from = std::min(begin + 1, m_end); // one character at least comes before
    eachAttribute(page, from, m_end, {"content"}, [this](std::size_t word, std::size_t value) {
        m_contents.push_back({word, value, m_page.find(m_page[value - 1], value)});
    });
    eachAttribute(
        page, from, m_end, {"property", "name"},
        [this](std::size_t word, std::size_t value) { m_names.push_back({word, value}); });
}

std::size_t MetaTag::keyEnd(const Name &name, std::string_view key) const {
    const std::size_t end = wordEnd(m_page, name.key, key);
    return end < m_page.size() && isQuote(m_page[end]) ? end + 1 : nowhere;
}

std::string_view MetaTag::text(const Content &content) const {
    return m_page.substr(content.value, content.close - content.value);
}

std::optional<std::string_view> MetaTag::valueAfter(std::string_view key) const {
    // The pattern takes the last content that has a closing quote.
    const auto content = std::find_if(m_contents.rbegin(), m_contents.rend(),
                                      [](const Content &one) { return one.close != nowhere; });
    if (content == m_contents.rend()) {
        return std::nullopt;
    }
    for (const Name &name : m_names) {
        const std::size_t end = keyEnd(name, key);
        if (end != nowhere) { // the first one leaves the most room
            return end + 1 <= content->word ? std::optional(text(*content)) : std::nullopt;
        }
    }
    return std::nullopt;
}

/// Whether the key stands between the end of a value that holds ">" and the next ">".
bool MetaTag::followedBy(std::string_view key, const Content &content) const {
    const std::size_t end = std::min(m_page.find('>', content.close), m_page.size());
    bool follows = false;
    eachAttribute(m_page, std::min(content.close + 2, end), end, {"property", "name"},
                  [&](std::size_t word, std::size_t value) {
                      follows = follows || keyEnd({word, value}, key) != nowhere;
                  });
    return follows;
}

std::optional<std::string_view> MetaTag::valueBefore(std::string_view key) const {
    const auto name = std::find_if(m_names.rbegin(), m_names.rend(), [&](const Name &candidate) {
        return keyEnd(candidate, key) != nowhere;
    });
    // The last content that the key follows. Two at most end beyond the tag: one a kind of quote.
    for (auto content = m_contents.rbegin(); content != m_contents.rend(); ++content) {
        const bool inside = content->close < m_end;
        if (inside ? name != m_names.rend() && content->close + 2 <= name->word
                   : content->close != nowhere && followedBy(key, *content)) {
            return text(*content);
        }
    }
    return std::nullopt;
}

} // namespace vorle::html
