#include "app/models/Comebacks.h"

#include <algorithm>

namespace vorle {

namespace {

/// What a topic is about, as keys. A dependency's name is no web address, so the two cannot meet.
template <class Visit>
void eachKey(const Topic &topic, Visit visit) {
    if (topic.dependency && !topic.dependency->isEmpty()) {
        visit(*topic.dependency);
    }
    for (const TopicSource &source : topic.sources) {
        visit(source.url);
    }
}

bool aboutTheSame(const Topic &a, const Topic &b) {
    if (a.dependency && !a.dependency->isEmpty() && a.dependency == b.dependency) {
        return true;
    }
    return std::ranges::any_of(a.sources, [&](const TopicSource &source) {
        return std::ranges::any_of(
            b.sources, [&](const TopicSource &other) { return other.url == source.url; });
    });
}

} // namespace

void Comebacks::note(const Topic &topic) {
    eachKey(topic, [&](const QString &key) {
        QList<QUuid> &ids = m_about[key];
        if (!ids.contains(topic.id)) {
            ids.append(topic.id);
        }
    });
}

QList<QUuid> Comebacks::kin(const Topic &topic) const {
    QList<QUuid> found;
    eachKey(topic, [&](const QString &key) {
        for (const QUuid &id : m_about.value(key)) {
            if (id != topic.id && !found.contains(id)) {
                found.append(id);
            }
        }
    });
    return found;
}

bool Comebacks::hasMoved(const Topic &reserved, const TopicStore &store) const {
    const QDateTime since = reserved.triagedAt.value_or(reserved.foundAt);
    const auto news = [&](const QUuid &id) {
        const TopicPtr other = store.topic(id);
        return other && other->foundAt > since && other->status != TopicStatus::Pending &&
               other->status != TopicStatus::Dismissed && aboutTheSame(reserved, *other);
    };
    return std::ranges::any_of(kin(reserved), news);
}

} // namespace vorle
