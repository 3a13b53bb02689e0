#include "desktop/WidgetSnapshot.h"

#include "base/French.h"
#include "base/FrenchLocale.h"
#include "base/FrenchSpacing.h"
#include "core/AccentColour.h"
#include "core/DurationText.h"
#include "core/ScoreScale.h"
#include "core/TopicOrder.h"
#include "core/WeekProgram.h"
#include "desktop/ShownLine.h"

#include <QFileInfo>

#include <algorithm>
#include <iterator>

namespace vorle {

namespace {

constexpr qsizetype widgetTitleCharacters = 200;
constexpr qsizetype detailCharacters = 80;

/// Only plain file names are believed.
QList<QString> picturesOf(const Topic &topic, const QString &folder) {
    QList<QString> paths;
    for (const Picture &picture : topic.gallery) {
        const QString path = folder + u'/' + picture.file;
        if (!folder.isEmpty() && !picture.file.isEmpty() &&
            QFileInfo(picture.file).fileName() == picture.file && QFileInfo(path).isFile()) {
            paths += path;
        }
    }
    return paths;
}

QString detailOf(const Topic &topic) {
    const TopicSource *source = topic.mainSource();
    const QString about = topic.project       ? *topic.project
                          : topic.interest    ? *topic.interest
                          : source != nullptr ? source->displayName()
                                              : QString();
    QStringList parts;
    if (const QString shown = shownLine(about, detailCharacters); !shown.isEmpty()) {
        parts += shown;
    }
    if (topic.minutes > 0) {
        parts += durationText(topic.minutes);
    }
    return parts.join(QStringLiteral(" · "));
}

QList<WidgetSnapshot::Item> itemsOf(const QList<TopicPtr> &topics, const QString &pictures) {
    QList<WidgetSnapshot::Item> items;
    for (const TopicPtr &topic : topics.first(std::min(topics.size(), WidgetSnapshot::maxItems))) {
        items.append({.id = topic->id,
                      .title = shownLine(topic->title, widgetTitleCharacters),
                      .score = shownScore(*topic),
                      .gallery = picturesOf(*topic, pictures),
                      .detail = detailOf(*topic),
                      .unread = !topic->triagedAt});
    }
    return items;
}

/// Those that stand first in "À trier".
QList<TopicPtr> firstToSort(const QList<TopicPtr> &inbox) {
    struct Placed {
        TopicPtr topic;
        Tier tier;
        qsizetype place;
    };
    QList<Placed> placed;
    placed.reserve(inbox.size());
    for (const TopicPtr &topic : inbox) {
        placed.append({topic, tierOf(*topic), placed.size()});
    }
    const auto sooner = [](const Placed &a, const Placed &b) {
        return inboxOrder(*a.topic, a.tier, *b.topic, b.tier) ||
               (!inboxOrder(*b.topic, b.tier, *a.topic, a.tier) && a.place < b.place);
    };
    const auto end = placed.begin() + std::min(placed.size(), WidgetSnapshot::maxItems);
    std::partial_sort(placed.begin(), end, placed.end(), sooner);
    QList<TopicPtr> first;
    std::transform(placed.begin(), end, std::back_inserter(first),
                   [](const Placed &each) { return each.topic; });
    return first;
}

QString dayText(const QDate &day) {
    const QString month = frenchLocale().monthName(day.month());
    return day.day() == 1 ? French::tr("1er %1").arg(month)
                          : QStringLiteral("%1 %2").arg(day.day()).arg(month);
}

} // namespace

QString relativeTimeText(const QDateTime &moment, const QDateTime &now, const QTimeZone &zone) {
    const QDateTime then = moment.toTimeZone(zone);
    const qint64 days = now.toTimeZone(zone).date().daysTo(then.date());
    const qint64 seconds = now.secsTo(moment);
    constexpr qint64 hour = 3600;
    if (days == 0 && seconds >= 0 && seconds <= hour) {
        const qint64 minutes = std::max<qint64>(1, (seconds + 59) / 60);
        return frenchSpacing(French::tr("aujourd’hui, dans %1 min").arg(minutes));
    }
    if (days == 0) {
        return QStringLiteral("%1:%2")
            .arg(then.time().hour())
            .arg(then.time().minute(), 2, 10, QChar(u'0'));
    }
    if (days == 1) {
        return French::tr("demain");
    }
    if (days == -1) {
        return French::tr("hier");
    }
    return days > 0 ? French::tr("dans %1 jours").arg(days) : dayText(then.date());
}

WidgetSnapshot widgetSnapshot(const WidgetSource &source) {
    const Period week = calendarWeek(source.now, QLocale::system(), source.zone);
    const WeekProgram program = weekProgram(source.topics, source.weeklyMinutes, week);
    QList<TopicPtr> inbox;
    int doneCount = 0;
    for (const TopicPtr &topic : source.topics) {
        if (topic->status == TopicStatus::Inbox) {
            inbox += topic;
        } else if (topic->status == TopicStatus::Done && topic->doneAt &&
                   week.contains(*topic->doneAt)) {
            ++doneCount;
        }
    }
    WidgetSnapshot snapshot;
    snapshot.toSortCount = static_cast<int>(inbox.size());
    snapshot.toSort = itemsOf(firstToSort(inbox), source.pictures);
    const QList<TopicPtr> kept = program.fits + program.waits;
    snapshot.programCount = static_cast<int>(kept.size());
    snapshot.program = itemsOf(kept, source.pictures);
    snapshot.weekDone = program.done;
    snapshot.weekPlanned = program.planned;
    snapshot.weekBudget = program.budget;
    snapshot.weekDoneCount = doneCount;
    snapshot.weekLabel =
        French::tr("Semaine du %1").arg(dayText(week.begin.toTimeZone(source.zone).date()));
    snapshot.weekLeftLabel = program.left > 0
                                 ? French::tr("Il te reste %1").arg(durationText(program.left))
                                 : French::tr("Ta semaine est pleine");
    snapshot.weekBudgetLabel = French::tr("sur %1").arg(durationText(program.budget));
    if (source.nextSearch) {
        snapshot.nextSearch = {*source.nextSearch,
                               relativeTimeText(*source.nextSearch, source.now, source.zone)};
    }
    snapshot.searching = source.searching;
    const ModeColour accent = accentColour(source.accent);
    snapshot.accent = {accent.light, accent.dark};
    return snapshot;
}

} // namespace vorle
