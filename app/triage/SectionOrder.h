#pragma once

#include "core/ScoreScale.h"
#include "core/TopicOrder.h"
#include "core/TopicStore.h"

#include <compare>
#include <optional>
#include <vector>

namespace vorle {

/// The sections that hold topics, in the order of the window's menu.
enum class TopicSection { Inbox, Program, Reserve, Library };

/// The section of a status; nothing for one that stands in none.
std::optional<TopicSection> sectionOf(TopicStatus status);
/// The section a topic is shown in: a captured link that is being read stands in "À trier" already.
std::optional<TopicSection> sectionOf(const Topic &topic);

/// A topic with what places it in its section beyond its own record. Worked out once, compared
/// often.
struct PlacedTopic {
    TopicPtr topic;
    Tier tier = Tier::ToDig; ///< of the topic, see tierOf()
    bool moved = false;      ///< of the reserve: see ReserveActivity
    bool waits = false;      ///< of the program: it does not fit in the week, see WeekProgram

    bool operator==(const PlacedTopic &) const = default;
};

/// Where a topic stands in its section: the least first. No two topics of a store have the same.
struct SectionRank {
    TopicRank own;           ///< with what comes before all: whether it moved, whether it waits
    qsizetype position = -1; ///< in the store; -1 stands for no topic

    auto operator<=>(const SectionRank &) const = default;
};

struct RankedTopic : PlacedTopic {
    SectionRank rank;

    bool operator==(const RankedTopic &) const = default;
};

/// The orders, for the window and the terminal alike:
/// - À trier: links just captured and still being read; then by tier, score, newest find;
/// - Programme: what fits in the week, then what waits, each in programOrder's;
/// - Réserve: topics that have moved, then the latest set aside;
/// - Bibliothèque: the latest done.
/// Topics that these hold equal stand as the store has them.
/// @param position in the store
SectionRank rankIn(TopicSection section, const PlacedTopic &placed, qsizetype position);
/// Main thread.
QList<RankedTopic> inOrder(TopicSection section, const QList<PlacedTopic> &topics,
                           const TopicStore &store);
/// By ranks that are known.
QList<RankedTopic> inOrder(std::vector<RankedTopic> topics);

} // namespace vorle
