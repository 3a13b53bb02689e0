#include "core/RediscoveryLog.h"

namespace vorle {

RediscoveryLog::RediscoveryLog(const TopicStore &store, const Clock &clock)
    : m_store(store)
    , m_clock(clock)
    , m_rediscoveries(store, clock, {fileName(), QStringLiteral("what was found again")}) {}

Task<> RediscoveryLog::record(QUuid topic) {
    const TopicPtr known = m_store.topic(topic);
    if (!known || known->status != TopicStatus::Reserve) {
        co_return;
    }
    auto kept = m_rediscoveries.add({Find{topic, m_clock.now()}});
    Q_EMIT found(topic);
    co_await kept;
}

bool RediscoveryLog::isSince(const QUuid &topic, const QDateTime &moment) {
    const auto find = m_rediscoveries.of(topic);
    return find && find->at > moment;
}

} // namespace vorle
