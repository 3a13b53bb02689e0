#include "app/labels/ScheduleText.h"

#include "app/labels/Wording.h"
#include "base/French.h"
#include "base/FrenchLocale.h"

#include <QRegularExpression>
#include <QStringList>

namespace vorle {

QString timeOfDayText(const TimeOfDay &time) {
    return QStringLiteral("%1:%2").arg(time.hour).arg(time.minute, 2, 10, QChar(u'0'));
}

std::optional<TimeOfDay> parsedTime(const QString &typed) {
    // Either parted, or in one piece, whose last two digits are the minutes past two of them.
    static const QRegularExpression parted(QStringLiteral("^([0-9]{1,2})[:hH.]([0-9]{2})?$"));
    static const QRegularExpression joined(QStringLiteral("^([0-9]{1,2}?)([0-9]{2})?$"));
    QString text = typed;
    text.removeIf([](QChar c) { return c.isSpace(); });
    for (const QRegularExpression *form : {&parted, &joined}) {
        if (const auto match = form->match(text); match.hasMatch()) {
            // "12" is noon: two digits alone are an hour.
            const bool hourAlone = form == &joined && text.size() <= 2;
            const TimeOfDay time =
                hourAlone ? TimeOfDay{text.toInt(), 0}
                          : TimeOfDay{match.captured(1).toInt(), match.captured(2).toInt()};
            return time.isValid() ? std::optional(time) : std::nullopt;
        }
    }
    return std::nullopt;
}

QString daysText(const QList<int> &weekdays) {
    QStringList days;
    for (int day = Qt::Monday; day <= Qt::Sunday; ++day) {
        if (weekdays.contains(day % 7 + 1)) {
            days += frenchLocale().dayName(day);
        }
    }
    if (days.isEmpty()) {
        return {};
    }
    if (days.size() == 7) {
        return French::tr("chaque jour");
    }
    const QString last = days.takeLast();
    return French::tr("chaque %1")
        .arg(days.isEmpty() ? last
                            : French::tr("%1 et %2").arg(days.join(QStringLiteral(", ")), last));
}

QString scheduleText(const Schedule &schedule) {
    const QString days = daysText(schedule.weekdays);
    return days.isEmpty() ? French::tr("Aucune fouille ne part seule.")
                          : French::tr("Ensuite, je fouille seul %1 à %2.")
                                .arg(days, timeOfDayText({schedule.hour, schedule.minute}));
}

QString nextRunSentence(const Settings &settings, const QDateTime &now, const QTimeZone &zone) {
    const auto next = settings.schedule.nextRun(now, zone, settings.believedSlot(now));
    return next ? French::tr("Prochaine fouille %1 à %2.")
                      .arg(dayText(*next, now, zone), timeText(*next, zone))
                : QString();
}

} // namespace vorle
