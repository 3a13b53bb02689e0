#pragma once

#include "core/TopicOrder.h"

#include <QList>
#include <QLocale>
#include <QString>
#include <QTimeZone>

#include <array>
#include <string_view>

namespace vorle {

/// The spans a report is made over.
enum class PeriodKind {
    Week,  ///< a calendar week, told by days
    Month, ///< four calendar weeks, told by weeks
    Year   ///< twelve calendar months, told by months
};
constexpr std::array<std::string_view, 3> rawStrings(PeriodKind) {
    return {"semaine", "mois", "annee"};
}

/// One span with the parts that its charts show, in order: they follow each other without a gap.
struct ReportPeriod {
    PeriodKind kind = PeriodKind::Week;
    Period whole;
    QList<Period> parts;

    /// The part that holds the moment, or -1.
    qsizetype partOf(const QDateTime &moment) const;
};

/// The span of that kind that ends with the present week or month, or lies `back` such spans before
/// it. Parts begin and end at midnight in `zone`, also where the clocks change between. Pure, any
/// thread.
ReportPeriod reportPeriod(PeriodKind kind, const QDateTime &now, int back = 0,
                          const QLocale &locale = QLocale::system(),
                          const QTimeZone &zone = QTimeZone::systemTimeZone());

/// "16 – 22 nov.", "26 oct. – 21 nov.", with years when they are not that of `now`; it never ends
/// after `now`.
QString rangeText(const ReportPeriod &period, const QDateTime &now, const QTimeZone &zone);
/// "26 oct.", "1er déc."; with the year where it is not `year`.
QString shortDay(const QDate &day, int year);
/// What a part is called under its bar: "lun. 16", "16 nov.", "nov.".
QString partLabel(const ReportPeriod &period, qsizetype part, const QTimeZone &zone);
/// "Cette semaine", "Les quatre dernières semaines", "Les douze derniers mois"; of a span further
/// back "Une semaine", "Quatre semaines", "Douze mois".
QString periodTitle(const ReportPeriod &period, const QDateTime &now);

} // namespace vorle
