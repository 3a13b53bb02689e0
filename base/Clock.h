#pragma once

#include <QByteArray>
#include <QDateTime>

#include <optional>

namespace vorle {

/// Where the present moment comes from, so that tests can turn it.
class Clock {
public:
    virtual ~Clock() = default;
    /// The present moment, in UTC, to the second: what records keep of it.
    virtual QDateTime now() const = 0;
};

class SystemClock final : public Clock {
public:
    QDateTime now() const override;
};

/// Reads an ISO 8601 moment (RFC 3339, section 5.6: "2026-11-21T08:00:00Z", an offset and a
/// fraction of a second allowed) into UTC, whole seconds. Nothing for any other text.
std::optional<QDateTime> parseIso8601(QByteArrayView text);

/// Writes a moment as UTC, to the second: "2026-11-21T08:00:00Z".
QByteArray formatIso8601(const QDateTime &moment);

} // namespace vorle
