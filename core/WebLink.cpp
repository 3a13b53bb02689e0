#include "core/WebLink.h"

#include "base/AddressRules.h"
#include "base/Text.h"

#include <algorithm>

namespace vorle {

namespace {

bool isControl(QChar c) {
    const char16_t code = c.unicode();
    return code < 0x20 || (code >= 0x7F && code < 0xA0) || code == 0x2028 || code == 0x2029;
}

} // namespace

std::optional<WebLink> WebLink::from(const QString &given, qsizetype most) {
    const QStringView bare = trimmed(given);
    // Encoding only lengthens an address.
    if (bare.size() > most || std::any_of(bare.begin(), bare.end(), isControl)) {
        return std::nullopt;
    }
    QUrl url = httpLink(bare.toString());
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

} // namespace vorle
