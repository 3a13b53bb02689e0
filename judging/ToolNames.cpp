#include "judging/ToolNames.h"

#include "base/Text.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace vorle {

namespace {

constexpr char16_t asciiEnd = 0x80;

constexpr auto asciiWordCharacters = [] {
    std::array<bool, asciiEnd> table{};
    for (const char16_t c :
         std::u16string_view(u"abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ"
                             u"0123456789")) {
        table[c] = true;
    }
    return table;
}();

bool isWordCharacter(char16_t c) {
    return c < asciiEnd ? asciiWordCharacters[c] : QChar::isLetterOrNumber(c);
}

char16_t folded(char16_t c) {
    if (c < asciiEnd) {
        return c >= u'A' && c <= u'Z' ? char16_t(c + (u'a' - u'A')) : c;
    }
    return isBlank(c) ? u' ' : char16_t(QChar::toCaseFolded(c));
}

bool goesOn(QStringView text, qsizetype at) {
    return at < text.size() &&
           (isWordCharacter(text[at].unicode()) || text[at] == u'+' || text[at] == u'#');
}

} // namespace

ToolNames::ToolNames(const QStringList &tools) {
    for (const QString &tool : tools) {
        QString name = tool.normalized(QString::NormalizationForm_C).simplified();
        for (QChar &c : name) {
            c = folded(c.unicode());
        }
        if (name.isEmpty()) {
            continue;
        }
        const char16_t first = name.front().unicode();
        if (first < asciiEnd) {
            m_starts.set(first);
        } else {
            m_startsBeyond = true;
        }
        m_names.push_back(std::move(name));
    }
    std::ranges::sort(m_names);
    m_names.erase(std::ranges::unique(m_names).begin(), m_names.end());
}

bool ToolNames::namedIn(QStringView text) const {
    if (m_names.empty()) {
        return false;
    }
    bool inWord = false;
    for (qsizetype at = 0; at < text.size(); ++at) {
        const char16_t c = text[at].unicode();
        if (!inWord) {
            const char16_t first = folded(c);
            const bool candidate = first < asciiEnd ? m_starts.test(first) : m_startsBeyond;
            if (candidate && startsAt(text, at)) {
                return true;
            }
        }
        inWord = isWordCharacter(c);
    }
    return false;
}

bool ToolNames::startsAt(QStringView text, qsizetype at) const {
    // The names that agree with the text so far stand side by side: the shortest of them first.
    auto from = m_names.begin();
    auto to = m_names.end();
    for (qsizetype length = 0; from != to; ++length) {
        if (from->size() == length) {
            if (!goesOn(text, at + length)) {
                return true;
            }
            ++from;
        }
        if (at + length == text.size()) {
            return false;
        }
        const char16_t next = folded(text[at + length].unicode());
        const auto character = [length](const QString &name) { return name[length].unicode(); };
        if (from != to && character(*from) == next && character(to[-1]) == next) {
            continue; // they all do
        }
        const auto agreeing = std::ranges::equal_range(from, to, next, {}, character);
        from = agreeing.begin();
        to = agreeing.end();
    }
    return false;
}

} // namespace vorle
