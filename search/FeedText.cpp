#include "search/FeedText.h"

#include "base/Text.h"
#include "search/HtmlEntities.h"

#include <algorithm>
#include <array>

namespace vorle {

namespace {

bool isLetter(char c) { return (c | 0x20) >= 'a' && (c | 0x20) <= 'z'; }

/// The name of the tag `text` begins with, "/" aside; empty when it is none.
std::string_view tagName(std::string_view text) {
    const std::size_t start = text.size() > 1 && text[1] == '/' ? 2 : 1;
    std::size_t end = start;
    while (end < text.size() &&
           (isLetter(text[end]) || (end > start && text[end] >= '0' && text[end] <= '9'))) {
        ++end;
    }
    return end > start ? text.substr(start, end - start) : std::string_view();
}

/// Whether a title's "<" opens a tag. "Vec<T>" and "a < b" do not: a tag of HTML is known, in lower
/// case and ends like one.
bool isTitleTag(std::string_view text, std::string_view name) {
    const std::size_t after = static_cast<std::size_t>(name.data() - text.data()) + name.size();
    const bool ends = after < text.size() &&
                      std::string_view("> /\n\t").find(text[after]) != std::string_view::npos;
    return ends && (isInlineElement(name) || name == "br" || name == "wbr" || name == "p");
}

/// Writes one line: runs of blanks as one, none at either end.
class LineWriter {
public:
    explicit LineWriter(qsizetype mostUnits) : m_most(mostUnits) {}

    bool full() const { return m_line.size() >= m_most; }
    void blank() { m_blankDue = !m_line.isEmpty(); }
    void text(QStringView text) {
        for (const QChar c : text) {
            if (isBlank(c.unicode()) || c.unicode() < 0x20 || c.unicode() == 0x7F) {
                blank();
                continue;
            }
            if (m_blankDue) {
                m_line += u' ';
                m_blankDue = false;
            }
            m_line += c;
        }
    }
    QString take() { return std::move(m_line); }

private:
    QString m_line;
    qsizetype m_most;
    bool m_blankDue = false;
};

/// Where what begins with a "<" at `at` ends, if it is to be taken out; `at` otherwise.
std::size_t endOfTag(std::string_view text, std::size_t at, Markup markup) {
    const std::string_view rest = text.substr(at);
    const auto past = [&](std::string_view end) {
        const std::size_t found = text.find(end, at);
        return found == std::string_view::npos ? text.size() : found + end.size();
    };
    if (markup == Markup::Any && rest.starts_with("<!--")) {
        return past("-->");
    }
    const std::string_view name = tagName(rest);
    const bool tag = markup == Markup::Any ? !name.empty() || rest.starts_with("<!")
                                           : !name.empty() && isTitleTag(rest, name);
    if (!tag) {
        return at;
    }
    if (rest.starts_with("<script")) {
        return past("</script>");
    }
    if (rest.starts_with("<style")) {
        return past("</style>");
    }
    return past(">");
}

} // namespace

bool isInlineElement(std::string_view name) {
    static constexpr std::array<std::string_view, 24> names{
        "a",   "abbr", "b",    "bdi", "big", "cite",  "code", "del",    "em",  "font", "i",  "img",
        "ins", "kbd",  "nobr", "q",   "s",   "small", "span", "strong", "sub", "sup",  "tt", "u"};
    return std::ranges::binary_search(names, name);
}

QString plainText(std::string_view utf8, Markup markup, qsizetype maxCharacters) {
    // A character may take many units; what is gathered stays bounded all the same.
    LineWriter line(maxCharacters * 8);
    std::size_t at = 0;
    while (at < utf8.size() && !line.full()) {
        const std::size_t next = markup == Markup::None
                                     ? utf8.size()
                                     : std::min(utf8.find_first_of("<&", at), utf8.size());
        line.text(QString::fromUtf8(utf8.data() + at, static_cast<qsizetype>(next - at)));
        at = next;
        if (at == utf8.size()) {
            break;
        }
        if (utf8[at] == '&') {
            const auto reference = characterReference(utf8.substr(at));
            line.text(reference ? QString::fromUcs4(&reference->character, 1)
                                : QStringLiteral("&"));
            at += reference ? reference->length : 1;
            continue;
        }
        const std::size_t end = endOfTag(utf8, at, markup);
        if (end == at) {
            line.text(u"<");
            ++at;
            continue;
        }
        if (!isInlineElement(tagName(utf8.substr(at)))) {
            line.blank();
        }
        at = end;
    }
    return firstCharacters(line.take(), maxCharacters).toString();
}

} // namespace vorle
