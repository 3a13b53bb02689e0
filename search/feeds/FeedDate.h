#pragma once

#include <QByteArrayView>
#include <QDateTime>

#include <optional>

namespace vorle {

/// Reads the date of a feed's item into UTC. These forms are tried in this order, English names
/// whatever the system's language, their case and the number of blanks aside; anything else has no
/// date:
///
///     EEE, dd MMM yyyy HH:mm:ss Z
///     EEE, d MMM yyyy HH:mm:ss Z
///     dd MMM yyyy HH:mm:ss Z
///     EEE, dd MMM yyyy HH:mm:ss zzz
///     EEE, dd MMM yyyy HH:mm Z
///     yyyy-MM-dd'T'HH:mm:ssZ
///     yyyy-MM-dd'T'HH:mm:ss.SSSZ
///
/// A zone is "+0130", "+01:30", "Z", a name of RFC 822 ("GMT", "EST") or one in common use ("CET",
/// "JST"), in every form, a remark in parentheses behind it aside. The military letters and other
/// names of three to five letters count as UTC, as RFC 2822 section 4.3 has it. A year of two
/// digits is what RFC 2822 makes of it. The weekday is not checked against the date; a day no month
/// has makes no date. Whole seconds. Pure, any thread.
std::optional<QDateTime> parseFeedDate(QByteArrayView text);

} // namespace vorle
