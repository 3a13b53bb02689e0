#pragma once

#include <QDateTime>
#include <QTimeZone>

namespace vorle {

/// The first moment, in UTC, at which the clocks of `zone` show that time of that day; where they
/// skip it, the moment of the skip. Pure.
QDateTime momentOn(const QDate &date, const QTime &time, const QTimeZone &zone);

} // namespace vorle
