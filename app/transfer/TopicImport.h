#pragma once

#include "core/TopicStore.h"

#include <QList>

namespace vorle {

/// What an import came to; the four add up to the topics that were given.
struct ImportOutcome {
    qsizetype added = 0;
    qsizetype sameTopic = 0; ///< one of that identity is there
    qsizetype sameLink = 0;  ///< one that leads to the same page is there
    qsizetype repeated = 0;  ///< its identity came twice

    static constexpr auto jsonFields() {
        return std::tuple(json::field("added", &ImportOutcome::added),
                          json::field("sameTopic", &ImportOutcome::sameTopic),
                          json::field("sameLink", &ImportOutcome::sameLink),
                          json::field("repeated", &ImportOutcome::repeated));
    }
    bool operator==(const ImportOutcome &) const = default;
};

/// Adds the topics that the store does not have, each as it is, at the end. What the store has
/// stays: no topic is changed, and none comes twice, neither by its identity nor by its main link
/// (or the captured one). Two of the given may share a link: where they come from, both stood.
/// Topics that a run had left for its end are released for triage. Main thread.
ImportOutcome importTopicsInto(TopicStore &store, QList<Topic> topics);

} // namespace vorle
