#include "app/triage/SectionOrder.h"

#include "core/TopicOrder.h"

#include <algorithm>
#include <compare>
#include <utility>
#include <vector>

namespace vorle {

namespace {

TopicRank ownRank(TopicSection section, const PlacedTopic &placed) {
    switch (section) {
    case TopicSection::Inbox:
        return inboxRank(*placed.topic, placed.tier);
    case TopicSection::Program:
        return programRank(*placed.topic);
    case TopicSection::Reserve:
        return latestTriagedRank(*placed.topic);
    case TopicSection::Library:
        return latestDoneRank(*placed.topic);
    }
    return {};
}

/// By the section's order, which may hold two topics equal; then as the store has them.
struct PlacedRank {
    bool stays;
    bool waits;
    TopicRank own;
    qsizetype position;
    qsizetype index; ///< in the list that is sorted

    auto operator<=>(const PlacedRank &) const = default;
};

PlacedRank rankOf(TopicSection section, const PlacedTopic &placed, qsizetype position = 0,
                  qsizetype index = 0) {
    return {!placed.moved, placed.waits, ownRank(section, placed), position, index};
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
    const auto order = rankOf(section, a) <=> rankOf(section, b);
    return order < 0 || (order == 0 && store.position(a.topic->id) < store.position(b.topic->id));
}

QList<PlacedTopic> inOrder(TopicSection section, QList<PlacedTopic> topics,
                           const TopicStore &store) {
    std::vector<PlacedRank> ranks;
    ranks.reserve(topics.size());
    for (const PlacedTopic &placed : topics) {
        ranks.push_back(
            rankOf(section, placed, store.position(placed.topic->id), std::ssize(ranks)));
    }
    std::ranges::sort(ranks);
    QList<PlacedTopic> sorted;
    sorted.reserve(topics.size());
    for (const PlacedRank &rank : ranks) {
        sorted.append(std::move(topics[rank.index]));
    }
    return sorted;
}

} // namespace vorle
