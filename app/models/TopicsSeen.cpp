#include "app/models/TopicsSeen.h"

namespace vorle {

TopicsSeen TopicsSeen::of(const TopicStore &store, const QDateTime &now) {
    TopicsSeen seen{.at = now, .last = {}, .held = {}};
    for (const QList<TopicPtr> all = store.topics(); const TopicPtr &topic : all) {
        if (topic->status == TopicStatus::Pending) {
            seen.held += topic->id;
        } else {
            seen.last = topic->id;
        }
    }
    return seen;
}

bool TopicsSeen::isBefore(const Topic &topic, const TopicStore &store) const {
    if (!last || held.contains(topic.id)) {
        return true;
    }
    const qsizetype place = store.position(*last);
    return place < 0 ? topic.foundAt > at : store.position(topic.id) > place;
}

} // namespace vorle
