#include "update/UpdateConfig.h"

#include <QHostAddress>

namespace vorle {

namespace {

bool isThisMachine(const QUrl &url) {
    return url.host() == u"localhost" || QHostAddress(url.host()).isLoopback();
}

} // namespace

UpdateConfig UpdateConfig::from(const QString &feed, const QByteArray &keyBase64) {
    const QString other = qEnvironmentVariable("VORLE_UPDATE_FEED");
    UpdateConfig config;
    const QUrl url(other.isEmpty() ? feed : other, QUrl::StrictMode);
    config.loopback = !other.isEmpty() && isThisMachine(url);
    const bool mayBe = url.scheme() == u"https" || (config.loopback && url.scheme() == u"http");
    if (mayBe && !url.host().isEmpty() && url.userInfo().isEmpty()) {
        config.feed = url;
    }
    const auto key =
        QByteArray::fromBase64Encoding(keyBase64, QByteArray::AbortOnBase64DecodingErrors);
    constexpr qsizetype keyBytes = 32;
    if ((*key).size() == keyBytes) {
        config.publicKey = *key;
    }
    return config;
}

} // namespace vorle
