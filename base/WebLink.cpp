#include "base/WebLink.h"

#include "base/Text.h"

#include <algorithm>

namespace vorle {

namespace {

bool isControl(QChar c) {
    const char16_t code = c.unicode();
    return code < 0x20 || (code >= 0x7F && code < 0xA0) || code == 0x2028 || code == 0x2029;
}

/// "https://a.fr" has one; "a.fr/?u=https://b.fr" has none.
bool hasScheme(QStringView address) {
    const qsizetype end = address.indexOf(u"://");
    return end >= 0 && std::all_of(address.begin(), address.begin() + end, [](QChar c) {
               return c.isLetterOrNumber() || c == u'+' || c == u'-' || c == u'.';
           });
}

} // namespace

bool WebLink::isWeb(const QUrl &address) {
    const QString scheme = address.scheme();
    return address.isValid() && (scheme == u"http" || scheme == u"https") &&
           !address.host().isEmpty();
}

QUrl WebLink::parsed(const QString &link) {
    QUrl url(trimmed(link).toString());
    return isWeb(url) ? url : QUrl();
}

std::optional<WebLink> WebLink::from(const QString &given, Giver giver) {
    const QStringView bare = trimmed(given);
    const qsizetype most = longest(giver);
    // Encoding only lengthens an address.
    if (bare.size() > most || std::any_of(bare.begin(), bare.end(), isControl)) {
        return std::nullopt;
    }
    QUrl url = parsed(bare.toString());
    if (url.isEmpty()) {
        return std::nullopt;
    }
    url.setUserInfo({});
    QString text = QString::fromLatin1(url.toEncoded());
    const bool plain = std::all_of(text.begin(), text.end(), [](QChar c) {
        return c > u' ' && c < u'\u007F' && !QStringView(u"\"<>`").contains(c);
    });
    return plain && text.size() <= most ? std::optional(WebLink(std::move(text))) : std::nullopt;
}

QString WebLink::shown(const QString &link) {
    const auto clean = from(link, Giver::User);
    return clean ? clean->text() : withoutHidden(link);
}

QStringList WebLink::segments(const QUrl &address) {
    return address.path(QUrl::FullyEncoded).split(u'/', Qt::SkipEmptyParts);
}

QString WebLink::site(const QUrl &address, QUrl::ComponentFormattingOptions form) {
    QString host = address.host(form);
    for (const QStringView prefix : {u"www.", u"m."}) {
        if (host.startsWith(prefix) && host.indexOf(u'.', prefix.size()) > 0) {
            host.remove(0, prefix.size());
        }
    }
    return host;
}

std::optional<WebLink> WebLink::typed(const QString &text, Host host) {
    const QString bare = trimmed(text).toString();
    if (hasScheme(bare)) {
        return from(bare, Giver::User);
    }
    const QString whole = QStringLiteral("https://") + bare;
    const QUrl address = parsed(whole);
    const bool isSite = host == Host::Any || address.host().contains(u'.');
    return isSite && address.userInfo().isEmpty() ? from(whole, Giver::User) : std::nullopt;
}

std::optional<WebLink> WebLink::resolved(const QString &link, const QUrl &base) {
    QString written = link;
    written.removeIf([](QChar c) { return c == u'\n' || c == u'\r' || c == u'\t'; });
    const QStringView bare = trimmed(written);
    if (bare.isEmpty() || bare.size() > longest(Giver::Stranger)) {
        return std::nullopt;
    }
    return from(base.resolved(QUrl(bare.toString())).toString(QUrl::FullyEncoded));
}

} // namespace vorle
