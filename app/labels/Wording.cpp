#include "app/labels/Wording.h"

#include "app/labels/TopicLabels.h"
#include "base/French.h"
#include "base/FrenchLocale.h"
#include "base/FrenchSpacing.h"
#include "base/Text.h"
#include "core/NumberText.h"

#include <QDir>

namespace vorle {

namespace {

QString weekday(const QDate &day) { return frenchLocale().dayName(day.dayOfWeek()); }

} // namespace

QString shownWords(const QString &words) { return frenchSpacing(withoutHidden(words)); }

QString shownPath(const QString &path) {
    const QString home = QDir::homePath();
    return home.size() > 1 && (path == home || path.startsWith(home + u'/'))
               ? u'~' + path.sliced(home.size())
               : path;
}

QString counted(qsizetype count, const QString &one, const QString &many) {
    return QStringLiteral("%1 %2").arg(numberText(count), count < 2 ? one : many);
}

QString countedTopics(qsizetype count) {
    return count == 0 ? French::tr("Aucun sujet")
                      : counted(count, French::tr("sujet"), French::tr("sujets"));
}

QStringList radiusNames() {
    return {French::tr("Seulement chez toi"), French::tr("Et chez tes voisins"),
            French::tr("Jusqu’aux terres inconnues")};
}

QString timeText(const QDateTime &moment, const QTimeZone &zone) {
    return moment.toTimeZone(zone).toString(QStringLiteral("H:mm"));
}

QString dayText(const QDateTime &moment, const QDateTime &now, const QTimeZone &zone) {
    const QDate day = moment.toTimeZone(zone).date();
    return weekday(day) + u' ' + dayLabel(day, now.toTimeZone(zone).date());
}

QString comingText(const QDateTime &moment, const QDateTime &now, const QTimeZone &zone) {
    const QDate day = moment.toTimeZone(zone).date();
    const qint64 days = now.toTimeZone(zone).date().daysTo(day);
    QString when = dayText(moment, now, zone);
    if (days == 0) {
        when = French::tr("aujourd’hui");
    } else if (days == 1) {
        when = French::tr("demain");
    } else if (days > 1 && days < 7) {
        when = weekday(day);
    } else if (days == 7) {
        when = French::tr("%1 prochain").arg(weekday(day));
    }
    return French::tr("%1 à %2").arg(when, timeText(moment, zone));
}

QString pastText(const QDateTime &moment, const QDateTime &now, const QTimeZone &zone) {
    const QDate day = moment.toTimeZone(zone).date();
    const QDate today = now.toTimeZone(zone).date();
    const qint64 days = day.daysTo(today);
    if (days == 0) {
        return French::tr("aujourd’hui");
    }
    if (days == 1) {
        return French::tr("hier");
    }
    return days > 1 && days < 7 ? weekday(day) : French::tr("le %1").arg(dayLabel(day, today));
}

QString ofDayText(const QDateTime &moment, const QDateTime &now, const QTimeZone &zone) {
    const QDate day = moment.toTimeZone(zone).date();
    const QDate today = now.toTimeZone(zone).date();
    const qint64 days = day.daysTo(today);
    if (days == 0) {
        return French::tr("d’aujourd’hui");
    }
    if (days == 1) {
        return French::tr("d’hier");
    }
    return days > 1 && days < 7 ? French::tr("de %1").arg(weekday(day))
                                : French::tr("du %1").arg(dayLabel(day, today));
}

} // namespace vorle
