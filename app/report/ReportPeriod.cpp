#include "app/report/ReportPeriod.h"

#include "base/French.h"
#include "base/FrenchLocale.h"

#include <algorithm>

namespace vorle {

namespace {

constexpr int daysAWeek = 7;
constexpr int weeksAMonth = 4;
constexpr int monthsAYear = 12;

Period between(const QDate &first, const QDate &end, const QTimeZone &zone) {
    return {first.startOfDay(zone), end.startOfDay(zone)};
}

} // namespace

QString shortDay(const QDate &day, int year) {
    const QString format =
        day.year() == year ? QStringLiteral(" MMM") : QStringLiteral(" MMM yyyy");
    return QString(frenchDayNumber(day) + frenchLocale().toString(day, format))
        .replace(u' ', u'\u00A0');
}

qsizetype ReportPeriod::partOf(const QDateTime &moment) const {
    const auto found = std::find_if(parts.begin(), parts.end(),
                                    [&](const Period &part) { return part.contains(moment); });
    return found == parts.end() ? -1 : found - parts.begin();
}

ReportPeriod reportPeriod(PeriodKind kind, const QDateTime &now, int back, const QLocale &locale,
                          const QTimeZone &zone) {
    ReportPeriod period{.kind = kind, .whole = {}, .parts = {}};
    const QDate today = now.toTimeZone(zone).date();
    if (kind == PeriodKind::Year) {
        const QDate month = QDate(today.year(), today.month(), 1).addMonths(-monthsAYear * back);
        for (int i = monthsAYear - 1; i >= 0; --i) {
            period.parts += between(month.addMonths(-i), month.addMonths(1 - i), zone);
        }
    } else {
        const QDate week = calendarWeek(now, locale, zone).begin.toTimeZone(zone).date();
        const bool days = kind == PeriodKind::Week;
        const int length = days ? 1 : daysAWeek;
        const int count = days ? daysAWeek : weeksAMonth;
        const QDate first = days ? week.addDays(-daysAWeek * back)
                                 : week.addDays(-daysAWeek * (weeksAMonth * (back + 1) - 1));
        for (int i = 0; i < count; ++i) {
            period.parts +=
                between(first.addDays(length * i), first.addDays(length * (i + 1)), zone);
        }
    }
    period.whole = {period.parts.first().begin, period.parts.last().end};
    return period;
}

QString rangeText(const ReportPeriod &period, const QDateTime &now, const QTimeZone &zone) {
    const QDate today = now.toTimeZone(zone).date();
    const QDate first = period.whole.begin.toTimeZone(zone).date();
    const QDate last =
        std::min(period.whole.end.toTimeZone(zone).date().addDays(-1), std::max(today, first));
    const QString end = shortDay(last, today.year());
    if (first == last) {
        return end;
    }
    const bool together = first.month() == last.month() && first.year() == last.year();
    return (together ? frenchDayNumber(first) : shortDay(first, today.year())) +
           QStringLiteral(" – ") + end;
}

QString partLabel(const ReportPeriod &period, qsizetype part, const QTimeZone &zone) {
    const QDate day = period.parts[part].begin.toTimeZone(zone).date();
    switch (period.kind) {
    case PeriodKind::Week:
        return frenchLocale().toString(day, QStringLiteral("ddd")) + u'\u00A0' +
               frenchDayNumber(day);
    case PeriodKind::Month:
        return shortDay(day, day.year());
    case PeriodKind::Year:
        break;
    }
    return frenchLocale().toString(day, QStringLiteral("MMM"));
}

QString periodTitle(const ReportPeriod &period, const QDateTime &now) {
    const bool present = now < period.whole.end;
    switch (period.kind) {
    case PeriodKind::Week:
        return present ? French::tr("Cette semaine") : French::tr("Une semaine");
    case PeriodKind::Month:
        return present ? French::tr("Les quatre dernières semaines")
                       : French::tr("Quatre semaines");
    case PeriodKind::Year:
        return present ? French::tr("Les douze derniers mois") : French::tr("Douze mois");
    }
    return {};
}

} // namespace vorle
