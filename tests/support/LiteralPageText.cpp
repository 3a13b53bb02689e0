#include "tests/support/LiteralPageText.h"

#include "base/Text.h"

#include <QRegularExpression>

namespace vorle::test {

namespace {

// \b after a name and \s, spelled out: what they mean varies with the regular expression library.
const QString wordEdge = QStringLiteral(R"((?![\p{L}\p{M}\p{Nd}\p{Nl}\p{Pc}\p{Cf}]))");
const QString blank = QStringLiteral(R"([\t-\r \x{85}\x{A0}\x{1680}\x{2000}-\x{200A}\x{2028})"
                                     R"(\x{2029}\x{202F}\x{205F}\x{3000}])");

const QString keyFirst = QStringLiteral(
    R"re(<meta[^>]+(?:property|name)=["']%1["'][^>]+content=(?|"([^"]*)"|'([^']*)'))re");
const QString contentFirst = QStringLiteral(
    R"re(<meta[^>]+content=(?|"([^"]*)"|'([^']*)')[^>]+(?:property|name)=["']%1["'])re");
const QString titleElement = QStringLiteral(R"(<title[^>]*>([\s\S]*?)</title>)");
const QString noiseElement = QStringLiteral(R"(<%1%2[\s\S]*?</%1>)");
const QString bodyElement = QStringLiteral(R"(<%1%2[^>]*>([\s\S]*?)</%1>)");
const QString anyTag = QStringLiteral(R"(<[^>]+>)");
const QString blanks = QStringLiteral(R"([ \t\x{A0}]+)");
const QString emptyLines = QStringLiteral(R"(%1*\n%1*(\n%1*)+)");

/// Compiled once, so that times compare.
const QRegularExpression &pattern(const QString &text) {
    static QHash<QString, QRegularExpression> compiled;
    QRegularExpression &known = compiled[text];
    if (known.pattern().isEmpty()) {
        known = QRegularExpression(text, QRegularExpression::CaseInsensitiveOption |
                                             QRegularExpression::UseUnicodePropertiesOption);
        known.optimize();
    }
    return known;
}

std::optional<QString> firstGroup(const QString &text, const QString &regex) {
    const auto match = pattern(regex).match(text);
    return match.hasMatch() ? std::optional(match.captured(1)) : std::nullopt;
}

QString cleaned(const QString &html) {
    QString text = decodeEntities(html);
    text.replace(pattern(blanks), QStringLiteral(" "));
    text.replace(pattern(emptyLines.arg(blank)), QStringLiteral("\n\n"));
    return trimmed(text).toString();
}

std::optional<QString> metaValue(const QString &html, const QString &key) {
    const auto value = firstGroup(html, keyFirst.arg(key));
    return value ? value : firstGroup(html, contentFirst.arg(key));
}

std::optional<QString> line(const std::optional<QString> &html) {
    const QString text = cleaned(html.value_or(QString()));
    return text.isEmpty() ? std::nullopt
                          : std::optional(firstCharacters(text, maxLineCharacters).toString());
}

QString body(QString page) {
    for (const QStringView tag : {u"script", u"style", u"noscript", u"svg", u"nav", u"header",
                                  u"footer", u"aside", u"form", u"template"}) {
        page.replace(pattern(noiseElement.arg(tag, wordEdge)), QString());
    }
    auto part = firstGroup(page, bodyElement.arg(u"article", wordEdge));
    if (!part) {
        part = firstGroup(page, bodyElement.arg(u"main", wordEdge));
    }
    return cleaned(part.value_or(page).replace(pattern(anyTag), QStringLiteral(" ")));
}

} // namespace

PageText literalPageText(const QString &html, PageExtent extent) {
    PageText page;
    page.title = line(metaValue(html, QStringLiteral("og:title")));
    if (!page.title) {
        page.title = line(firstGroup(html, titleElement));
    }
    for (const char16_t *key : {u"og:description", u"description", u"twitter:description"}) {
        if (!page.description) {
            page.description = line(metaValue(html, QString::fromUtf16(key)));
        }
    }
    const QString text = body(html);
    const QString kept = firstCharacters(text, maxBodyCharacters).toString();
    if (characterCount(kept) >= readableCharacters) {
        page.text = kept.toUtf8();
        page.level = extent == PageExtent::Cut ? ReadLevel::Seen : ReadLevel::Full;
    } else if (page.title || page.description) {
        page.level = ReadLevel::Meta;
    }
    return page;
}

} // namespace vorle::test
