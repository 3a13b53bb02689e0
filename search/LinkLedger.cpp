#include "search/LinkLedger.h"

#include "search/Links.h"

namespace vorle {

LinkLedger::LinkLedger(const QList<TopicPtr> &topics) {
    for (const TopicPtr &topic : topics) {
        for (const TopicSource &source : topic->sources) {
            m_held.insert(canonicalLink(source.url), topic->id);
        }
        if (topic->capturedURL) {
            m_held.insert(canonicalLink(*topic->capturedURL), topic->id);
        }
    }
}

LinkLedger::Claim LinkLedger::claim(const QString &link, qsizetype item) {
    const QString canonical = canonicalLink(link);
    if (const auto held = m_held.constFind(canonical); held != m_held.cend()) {
        return {Standing::Held, *held, 0};
    }
    const auto same = m_items.constFind(canonical);
    if (same != m_items.cend() && *same != item) {
        return {Standing::Same, {}, *same};
    }
    m_items.insert(canonical, item);
    return {};
}

} // namespace vorle
