#pragma once

#include <QDate>
#include <QLocale>
#include <QString>

namespace vorle {

/// How numbers, days and months are written and names are sorted, wherever people read them: as in
/// France, whatever the system is set to. Any thread.
inline QLocale frenchLocale() { return {QLocale::French, QLocale::France}; }

/// The day of the month in a date: "16", but "1er". Any thread.
inline QString frenchDayNumber(const QDate &day) {
    return day.day() == 1 ? QStringLiteral("1er") : QString::number(day.day());
}

} // namespace vorle
