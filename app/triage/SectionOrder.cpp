#include "app/triage/SectionOrder.h"

#include "core/TopicOrder.h"

#include <algorithm>

namespace vorle {

namespace {

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
        return inboxOrder(*a.topic, a.tier, *b.topic, b.tier);
    case TopicSection::Program:
        return programOrder(*a.topic, *b.topic);
    case TopicSection::Reserve:
        return latestTriagedFirst(*a.topic, *b.topic);
    case TopicSection::Library:
        return latestDoneFirst(*a.topic, *b.topic);
    }
    return false;
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

} // namespace vorle
