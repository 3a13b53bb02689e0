#pragma once

#include <QByteArray>
#include <QString>
#include <QUrl>

namespace vorle {

/// What a program knows of where its new versions come from: fixed when it is built.
struct UpdateConfig {
    QUrl feed;             ///< the releases; empty: there is no place to look at
    QByteArray publicKey;  ///< whose signature counts, 32 bytes; empty: nobody's
    bool loopback = false; ///< the feed is this machine's own, as the person said by a variable

    /// What was built in, VORLE_UPDATE_FEED of the environment in place of the feed. Only https is
    /// a feed, or http of this machine where the variable names it.
    static UpdateConfig from(const QString &feed, const QByteArray &keyBase64);
};

} // namespace vorle
