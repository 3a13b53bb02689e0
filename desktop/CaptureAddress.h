#pragma once

#include <QString>

#include <optional>

namespace vorle {

/// A link that an address of ours brings: "vorle://add?url=…&title=…". Any page can make a browser
/// open one, so that what it says is a stranger's, and is only ever proposed.
struct CaptureAddress {
    QString url; ///< a web address, as WebLink takes a stranger's
    QString title;

    /// What the address says; nothing where it is none of ours, has more than 16,000 characters, or
    /// brings no web address. Of a part that stands there twice the first counts; parts of other
    /// names are passed over. Pure.
    static std::optional<CaptureAddress> from(const QString &address);
    /// Whether it is an address of ours at all, whatever it brings.
    static bool isOurs(const QString &address);

    bool operator==(const CaptureAddress &) const = default;
};

} // namespace vorle
