#include "search/web/AttributeReader.h"

#include "search/web/HtmlWord.h"

namespace vorle::html {

QString addressIn(std::string_view value) {
    return QString::fromUtf8(value.data(), static_cast<qsizetype>(value.size()))
        .replace(QStringLiteral("&amp;"), QStringLiteral("&"));
}

bool AttributeReader::Attribute::is(std::string_view wanted) const {
    return wordEnd(name, 0, wanted) == name.size();
}

void AttributeReader::passBlanks() {
    while (m_at < m_text.size() && ascii::isSpace(m_text[m_at])) {
        ++m_at;
    }
}

std::optional<AttributeReader::Attribute> AttributeReader::next() {
    const auto seek = [this](const char *signs) {
        const std::size_t begin = m_at;
        m_at = std::min(m_text.find_first_of(signs, m_at), m_text.size());
        return m_text.substr(begin, m_at - begin);
    };
    for (passBlanks(); m_at < m_text.size() && m_text[m_at] != '>'; passBlanks()) {
        Attribute attribute;
        attribute.name = seek("=>\"'/ \t\r\n\v\f");
        passBlanks();
        const char sign = m_at < m_text.size() ? m_text[m_at] : '>';
        if (sign != '=' && !attribute.name.empty()) {
            return attribute;
        }
        if (sign != '=') { // a stray quote or slash
            ++m_at;
            continue;
        }
        ++m_at;
        passBlanks();
        if (m_at >= m_text.size() || !isQuote(m_text[m_at])) {
            attribute.value = seek("\"'> \t\r\n\v\f");
            return attribute;
        }
        const std::size_t close = m_text.find(m_text[m_at], m_at + 1);
        if (close == nowhere) {
            m_at = m_text.size();
            return std::nullopt;
        }
        attribute.value = m_text.substr(m_at + 1, close - m_at - 1);
        attribute.quoted = true;
        m_at = close + 1;
        return attribute;
    }
    return std::nullopt;
}

} // namespace vorle::html
