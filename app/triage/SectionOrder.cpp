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

QList<RankedTopic> inOrder(TopicSection section, const QList<PlacedTopic> &topics,
                           const TopicStore &store) {
    std::vector<RankedTopic> ranked;
    ranked.reserve(topics.size());
    for (const PlacedTopic &placed : topics) {
        ranked.push_back({placed, rankIn(section, placed, store.position(placed.topic->id))});
    }
    return inOrder(std::move(ranked));
}

QList<RankedTopic> inOrder(std::vector<RankedTopic> topics) {
    // Only the ranks are moved about, each with where its topic stands by now.
    std::vector<std::pair<SectionRank, std::size_t>> ranks;
    ranks.reserve(topics.size());
    for (const RankedTopic &topic : topics) {
        ranks.emplace_back(topic.rank, ranks.size());
    }
    std::ranges::sort(ranks);
    QList<RankedTopic> sorted;
    sorted.reserve(std::ssize(topics));
    for (const auto &[rank, index] : ranks) {
        sorted.append(std::move(topics[index]));
    }
    return sorted;
}

} // namespace vorle
