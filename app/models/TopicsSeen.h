#pragma once

#include "base/Json.h"
#include "core/TopicStore.h"

#include <QDateTime>
#include <QList>
#include <QUuid>

#include <optional>

namespace vorle {

/// Which topics there were to be seen at a moment: what came afterwards is new. Not told by when a
/// topic was found: a run hands all of them out at its end, and one that goes on another day gives
/// them the day on which it began. Told by their order in the store, which they keep. A value.
struct TopicsSeen {
    QDateTime at;
    std::optional<QUuid> last; ///< the last one there was to be seen; nothing where there was none
    QList<QUuid> held;         ///< a run had found them, and not handed them out
    json::Rest unknown = {};   ///< keys of a later version

    static constexpr auto jsonFields() {
        return std::tuple(json::field("at", &TopicsSeen::at),
                          json::field("last", &TopicsSeen::last),
                          json::field("held", &TopicsSeen::held));
    }
    static constexpr auto jsonRest() { return &TopicsSeen::unknown; }
    bool operator==(const TopicsSeen &) const = default;

    /// As it is now. Main thread.
    static TopicsSeen of(const TopicStore &store, const QDateTime &now);
    /// Whether that topic of the store came later. Main thread.
    bool isBefore(const Topic &topic, const TopicStore &store) const;
};

} // namespace vorle
