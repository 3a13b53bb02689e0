#include "core/FoundAgain.h"

namespace vorle {

FoundAgain::FoundAgain(const TopicStore &store, const Clock &clock)
    : m_store(store)
    , m_clock(clock)
    , m_finds(store, clock,
              {QStringLiteral("found-again.json"), QStringLiteral("what was found again")}) {}

Task<> FoundAgain::note(QUuid topic) {
    const TopicPtr held = m_store.topic(topic);
    if (!held || held->status != TopicStatus::Reserve) {
        co_return;
    }
    auto kept = m_finds.add({Find{topic, m_clock.now()}});
    Q_EMIT found(topic);
    co_await kept;
}

bool FoundAgain::isSince(const QUuid &topic, const QDateTime &moment) {
    const auto find = m_finds.of(topic);
    return find && find->at > moment;
}

} // namespace vorle
