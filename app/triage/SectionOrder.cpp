#include "app/triage/SectionOrder.h"

#include <algorithm>
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

SectionRank rankIn(TopicSection section, const PlacedTopic &placed, qsizetype position) {
    constexpr quint32 stays = 1U << 25;
    constexpr quint32 waits = 1U << 24;
    TopicRank rank = ownRank(section, placed);
    rank.group |= (placed.moved ? 0U : stays) | (placed.waits ? waits : 0U);
    return {rank, position};
}

QList<PlacedTopic> inOrder(TopicSection section, QList<PlacedTopic> topics,
                           const TopicStore &store) {
    std::vector<std::pair<SectionRank, qsizetype>> ranks; // each with where it stands by now
    ranks.reserve(topics.size());
    for (const PlacedTopic &placed : topics) {
        ranks.emplace_back(rankIn(section, placed, store.position(placed.topic->id)),
                           std::ssize(ranks));
    }
    std::ranges::sort(ranks);
    QList<PlacedTopic> sorted;
    sorted.reserve(topics.size());
    for (const auto &[rank, index] : ranks) {
        sorted.append(std::move(topics[index]));
    }
    return sorted;
}

} // namespace vorle
