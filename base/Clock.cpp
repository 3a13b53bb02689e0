#include "base/Clock.h"

#include <QDate>
#include <QTime>

namespace vorle {

QDateTime SystemClock::now() const {
    return QDateTime::fromSecsSinceEpoch(QDateTime::currentSecsSinceEpoch(), Qt::UTC);
}

namespace {

/// The number in `digits` characters at `from`, or -1.
int number(QByteArrayView text, qsizetype from, qsizetype digits) {
    if (from + digits > text.size()) {
        return -1;
    }
    int value = 0;
    for (qsizetype i = from; i < from + digits; ++i) {
        const char c = text[i];
        if (c < '0' || c > '9') {
            return -1;
        }
        value = value * 10 + (c - '0');
    }
    return value;
}

/// Seconds east of UTC for "Z", "+02:00", "+0200" or "+02", or nothing.
std::optional<int> offsetSeconds(QByteArrayView zone) {
    if (zone == QByteArrayView("Z") || zone == QByteArrayView("z")) {
        return 0;
    }
    if (zone.size() < 3 || (zone[0] != '+' && zone[0] != '-')) {
        return std::nullopt;
    }
    const int hours = number(zone, 1, 2);
    int minutes = 0;
    if (zone.size() == 6 && zone[3] == ':') {
        minutes = number(zone, 4, 2);
    } else if (zone.size() == 5) {
        minutes = number(zone, 3, 2);
    } else if (zone.size() != 3) {
        return std::nullopt;
    }
    if (hours < 0 || hours > 23 || minutes < 0 || minutes > 59) {
        return std::nullopt;
    }
    const int seconds = hours * 3600 + minutes * 60;
    return zone[0] == '-' ? -seconds : seconds;
}

} // namespace

std::optional<QDateTime> parseIso8601(QByteArrayView text) {
    constexpr qsizetype basic = 19; // "2026-11-21T08:00:00"
    if (text.size() < basic + 1 || text[4] != '-' || text[7] != '-' ||
        (text[10] != 'T' && text[10] != 't') || text[13] != ':' || text[16] != ':') {
        return std::nullopt;
    }
    const QDate date(number(text, 0, 4), number(text, 5, 2), number(text, 8, 2));
    const int hour = number(text, 11, 2);
    const int minute = number(text, 14, 2);
    int second = number(text, 17, 2);
    if (second == 60) { // a leap second reads as the one before it
        second = 59;
    }
    if (!date.isValid() || !QTime::isValid(hour, minute, second)) {
        return std::nullopt;
    }
    qsizetype zoneAt = basic;
    if (text[zoneAt] == '.' || text[zoneAt] == ',') {
        const qsizetype firstDigit = ++zoneAt;
        while (zoneAt < text.size() && text[zoneAt] >= '0' && text[zoneAt] <= '9') {
            ++zoneAt;
        }
        if (zoneAt == firstDigit) {
            return std::nullopt;
        }
    }
    const auto offset = offsetSeconds(text.sliced(zoneAt));
    if (!offset) {
        return std::nullopt;
    }
    constexpr qint64 epochJulianDay = 2'440'588;
    const qint64 days = date.toJulianDay() - epochJulianDay;
    const qint64 seconds = days * 86'400 + hour * 3600 + minute * 60 + second - *offset;
    const QDateTime moment = QDateTime::fromSecsSinceEpoch(seconds, Qt::UTC);
    // An offset may lead into a year that the four digits of this form cannot write.
    const int year = moment.date().year();
    return year >= 1 && year <= 9999 ? std::optional(moment) : std::nullopt;
}

QByteArray formatIso8601(const QDateTime &moment) {
    return moment.toUTC().toString(QStringLiteral("yyyy-MM-ddTHH:mm:ssZ")).toLatin1();
}

} // namespace vorle
