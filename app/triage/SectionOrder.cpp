#include "app/triage/SectionOrder.h"

#include "base/French.h"
#include "base/FrenchLocale.h"
#include "core/WeekProgram.h"

#include <algorithm>

namespace vorle {

namespace {

bool soonerInInbox(const PlacedTopic &a, const PlacedTopic &b) {
    const bool reading = isBeingRead(*a.topic);
    if (reading != isBeingRead(*b.topic)) {
        return reading;
    }
    if (a.tier != b.tier) {
        return a.tier < b.tier;
    }
    const int score = shownScore(*a.topic).value_or(0);
    const int other = shownScore(*b.topic).value_or(0);
    return score != other ? score > other : a.topic->foundAt > b.topic->foundAt;
}

/// The section's order; it may hold two topics equal.
bool sooner(TopicSection section, const PlacedTopic &a, const PlacedTopic &b) {
    if (a.moved != b.moved) {
        return a.moved;
    }
    if (a.waits != b.waits) {
        return b.waits;
    }
    switch (section) {
    case TopicSection::Inbox:
        return soonerInInbox(a, b);
    case TopicSection::Program:
        return programOrder(*a.topic, *b.topic);
    case TopicSection::Reserve:
        return latestTriagedFirst(*a.topic, *b.topic);
    case TopicSection::Library:
        return latestDoneFirst(*a.topic, *b.topic);
    }
    return false;
}

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

std::optional<TopicSection> sectionOf(TopicStatus status) {
    switch (status) {
    case TopicStatus::Inbox:
        return TopicSection::Inbox;
    case TopicStatus::Program:
        return TopicSection::Program;
    case TopicStatus::Reserve:
        return TopicSection::Reserve;
    case TopicStatus::Done:
        return TopicSection::Library;
    case TopicStatus::Pending:
    case TopicStatus::Dismissed:
        break;
    }
    return std::nullopt;
}

std::optional<TopicSection> sectionOf(const Topic &topic) {
    return isBeingRead(topic) ? TopicSection::Inbox : sectionOf(topic.status);
}

bool standsBefore(TopicSection section, const PlacedTopic &a, const PlacedTopic &b,
                  const TopicStore &store) {
    return sooner(section, a, b) ||
           (!sooner(section, b, a) && store.position(a.topic->id) < store.position(b.topic->id));
}

QList<PlacedTopic> inOrder(TopicSection section, QList<PlacedTopic> topics,
                           const TopicStore &store) {
    // As the store has them first, so that a stable sort need not ask it for every two.
    const auto position = [&](const PlacedTopic &placed) {
        return store.position(placed.topic->id);
    };
    if (!std::ranges::is_sorted(topics, {}, position)) {
        std::ranges::sort(topics, {}, position);
    }
    std::ranges::stable_sort(
        topics, [&](const PlacedTopic &a, const PlacedTopic &b) { return sooner(section, a, b); });
    return topics;
}

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
