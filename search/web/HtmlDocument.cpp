#include "search/web/HtmlDocument.h"

#include "search/web/HtmlWord.h"
#include "search/web/MetaTag.h"

#include <QChar>

#include <algorithm>
#include <array>

namespace vorle::html {

namespace {

/// In the order of Tag, which is the alphabet's.
constexpr std::array<std::string_view, 14> names{
    "article", "aside",    "footer", "form",  "header", "main",     "meta",
    "nav",     "noscript", "script", "style", "svg",    "template", "title"};

/// The bytes of "</noscript>" and "</template>", and one more for a long s.
constexpr std::size_t maxTagBytes = 12;

/// For each letter, the first name that does not come before it.
constexpr std::array<std::uint8_t, 27> firstName = [] {
    std::array<std::uint8_t, 27> table{};
    std::uint8_t name = 0;
    for (std::size_t letter = 0; letter < table.size(); ++letter) {
        while (name < names.size() && names[name][0] < static_cast<char>('a' + letter)) {
            ++name;
        }
        table[letter] = name;
    }
    return table;
}();

/// The code point at `at` in valid UTF-8.
char32_t codePointAt(std::string_view text, std::size_t at) {
    const auto lead = static_cast<unsigned char>(text[at]);
    if (lead < 0x80) {
        return lead;
    }
    const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
    char32_t point = lead & (0xFFU >> (length + 1));
    for (std::size_t i = 1; i < length && at + i < text.size(); ++i) {
        point = point << 6 | (static_cast<unsigned char>(text[at + i]) & 0x3FU);
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

} // namespace

Document::Document(std::string_view page) : m_page(page) {
    m_marks.reserve(page.size() / 8); // memory that is not used is not touched
    for (auto at = page.find('<'); at != nowhere; at = page.find('<', at + 1)) {
        if (const auto mark = markAt(at)) {
            add(*mark, m_marks);
        }
    }
}

std::optional<Document::Mark> Document::markAt(std::size_t begin) const {
    const std::string_view page = m_page;
    const bool closing = begin + 1 < page.size() && page[begin + 1] == '/';
    const std::size_t word = begin + (closing ? 2 : 1);
    if (word >= page.size()) {
        return std::nullopt;
    }
    const char letter = page[word] == '\xC5' ? 's' : lower(page[word]); // it may be a long s
    if (letter < 'a' || letter > 'z') {
        return std::nullopt;
    }
    const auto position = static_cast<std::uint32_t>(begin);
    for (std::size_t i = firstName[letter - 'a']; i < firstName[letter - 'a' + 1]; ++i) {
        const std::size_t end = wordEnd(page, word, names[i]);
        if (end == nowhere) {
            continue;
        }
        const auto tag = static_cast<Tag>(i);
        if (closing && end < page.size() && page[end] == '>') {
            return Mark{position, static_cast<std::uint8_t>(end + 1 - begin), tag, true};
        }
        const bool anyEnd = tag == Tag::Meta || tag == Tag::Title;
        if (!closing && (anyEnd || !wordGoesOn(page, end))) {
            return Mark{position, static_cast<std::uint8_t>(end - begin), tag, false};
        }
    }
    return std::nullopt;
}

void Document::add(const Mark &mark, std::vector<Mark> &marks) {
    (mark.closing ? m_closing : m_opening) |= 1U << static_cast<unsigned>(mark.tag);
    marks.push_back(mark);
}

bool Document::mayHold(Tag tag) const {
    return (m_opening & m_closing & (1U << static_cast<unsigned>(tag))) != 0;
}

std::vector<std::optional<std::string_view>>
Document::metaValues(std::span<const std::string_view> keys) const {
    std::vector<std::optional<std::string_view>> after(keys.size());
    std::vector<std::optional<std::string_view>> before(keys.size());
    std::size_t seen = 0;
    for (const Mark &mark : m_marks) {
        if (mark.tag != Tag::Meta || mark.closing || mark.begin < seen) {
            continue;
        }
        const MetaTag meta(m_page, mark.end());
        for (std::size_t i = 0; i < keys.size(); ++i) {
            after[i] = after[i] ? after[i] : meta.valueAfter(keys[i]);
            before[i] = before[i] ? before[i] : meta.valueBefore(keys[i]);
        }
        seen = meta.end();
    }
    for (std::size_t i = 0; i < keys.size(); ++i) {
        after[i] = after[i] ? after[i] : before[i];
    }
    return after;
}

std::optional<std::string_view> Document::first(Tag tag) const {
    if (!mayHold(tag)) {
        return std::nullopt;
    }
    const auto opening = std::find_if(m_marks.begin(), m_marks.end(), [&](const Mark &mark) {
        return mark.tag == tag && !mark.closing;
    });
    // When the first one finds no end, no later one does.
    const std::size_t end = opening == m_marks.end() ? nowhere : m_page.find('>', opening->end());
    if (end == nowhere) {
        return std::nullopt;
    }
    const auto closing = std::find_if(opening, m_marks.end(), [&](const Mark &mark) {
        return mark.tag == tag && mark.closing && mark.begin > end;
    });
    if (closing == m_marks.end()) {
        return std::nullopt;
    }
    return text().substr(end + 1, closing->begin - end - 1);
}

void Document::remove(Tag tag) {
    if (!mayHold(tag)) {
        return;
    }
    std::vector<Mark> opened;
    std::vector<Mark> closed;
    for (const Mark &mark : m_marks) {
        if (mark.tag != tag) {
            continue;
        }
        const bool inside = opened.size() > closed.size();
        if (inside == mark.closing) {
            (inside ? closed : opened).push_back(mark);
        }
    }
    opened.resize(closed.size()); // one that never closes stays
    if (!opened.empty()) {
        takeOut(opened, closed);
    }
}

void Document::takeOut(std::span<const Mark> opened, std::span<const Mark> closed) {
    std::vector<std::size_t> seams;
    std::size_t written = opened.front().begin;
    std::size_t marksKept = 0;
    auto mark = m_marks.begin();
    const auto keepMarksUpTo = [&](std::size_t end, std::size_t shift) {
        for (; mark != m_marks.end() && mark->begin < end; ++mark) {
            mark->begin -= static_cast<std::uint32_t>(shift);
            m_marks[marksKept++] = *mark;
        }
    };
    keepMarksUpTo(written, 0);
    for (std::size_t i = 0; i < opened.size(); ++i) {
        while (mark != m_marks.end() && mark->begin < closed[i].end()) {
            ++mark;
        }
        const std::size_t begin = closed[i].end();
        const std::size_t end = i + 1 < opened.size() ? opened[i + 1].begin : m_page.size();
        keepMarksUpTo(end, begin - written);
        seams.push_back(written);
        std::copy(m_page.data() + begin, m_page.data() + end, m_page.data() + written);
        written += end - begin;
    }
    m_page.resize(written);
    m_marks.resize(marksKept);
    lookAgainAt(seams);
}

/// What stood apart stands together at a seam: "<na" and "v>" make a tag, "<nav" and "igation>"
/// no longer do. Only the last "<" before the seam can begin such a tag.
void Document::lookAgainAt(std::span<const std::size_t> seams) {
    std::vector<Mark> marks;
    marks.reserve(m_marks.size());
    auto mark = m_marks.begin();
    for (const std::size_t seam : seams) {
        const std::size_t reach = std::min(seam, maxTagBytes);
        const std::size_t back = text().substr(seam - reach, reach).rfind('<');
        if (back == nowhere) {
            continue;
        }
        const std::size_t begin = seam - reach + back;
        if (!marks.empty() && marks.back().begin >= begin) {
            continue; // seen from an earlier seam
        }
        for (; mark != m_marks.end() && mark->begin < begin; ++mark) {
            marks.push_back(*mark);
        }
        if (mark != m_marks.end() && mark->begin == begin) {
            ++mark;
        }
        if (const auto found = markAt(begin)) {
            add(*found, marks);
        }
    }
    marks.insert(marks.end(), mark, m_marks.end());
    m_marks = std::move(marks);
}

Beginning beginning(std::string_view text, std::size_t maxBytes) {
    if (text.size() <= maxBytes) {
        return {text, true};
    }
    const std::size_t blank = text.substr(0, maxBytes).rfind(' ');
    return {text.substr(0, blank == nowhere ? 0 : blank), false};
}

Beginning Stripper::upTo(std::size_t maxBytes) {
    while (m_at < m_page.size() && m_text.size() <= maxBytes) {
        const std::size_t tag = m_page.find('<', m_at);
        const std::size_t end = tag == nowhere ? nowhere : m_page.find('>', tag + 1);
        const bool empty = end == tag + 1; // "<>" is text
        const std::size_t textEnd = end == nowhere ? m_page.size() : empty ? end : tag;
        const std::size_t room = maxBytes + 1 - m_text.size();
        if (textEnd - m_at > room) {
            m_text += m_page.substr(m_at, room);
            m_at += room;
            break;
        }
        m_text += m_page.substr(m_at, textEnd - m_at);
        m_at = textEnd;
        if (end != nowhere && !empty) {
            m_text += ' ';
            m_at = end + 1;
        }
    }
    const Beginning read = beginning(m_text, maxBytes);
    return {read.text, read.whole && m_at == m_page.size()};
}

} // namespace vorle::html
