#include "app/labels/SectionLabels.h"

#include "base/French.h"
#include "base/FrenchLocale.h"
#include "core/WeekProgram.h"

namespace vorle {

namespace {

QString monthHeading(const std::optional<QDateTime> &moment) {
    if (!moment) {
        return {};
    }
    QString month =
        frenchLocale().toString(moment->toLocalTime().date(), QStringLiteral("MMMM yyyy"));
    month[0] = month[0].toUpper();
    return month;
}

} // namespace

QString headingOf(TopicSection section, const PlacedTopic &placed) {
    switch (section) {
    case TopicSection::Inbox:
        return isBeingRead(*placed.topic) ? French::tr("En cours de lecture")
                                          : tierLabel(placed.tier);
    case TopicSection::Program:
        return placed.waits ? waitingHeading() : tierLabel(placed.tier);
    case TopicSection::Reserve:
        return placed.moved ? French::tr("Ils ont bougé") : QString();
    case TopicSection::Library:
        return monthHeading(placed.topic->doneAt);
    }
    return {};
}

} // namespace vorle
