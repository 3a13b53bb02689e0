#include "search/run/LinkRegistry.h"

#include "search/web/Links.h"

#include <algorithm>

namespace vorle {

LinkRegistry::LinkRegistry(const QList<TopicPtr> &topics) {
    QList<TopicPtr> ordered = topics; // the last one counts
    std::ranges::stable_partition(
        ordered, [](const TopicPtr &topic) { return topic->status != TopicStatus::Reserve; });
    for (const TopicPtr &topic : ordered) {
        know(*topic);
    }
}

void LinkRegistry::know(const Topic &topic) {
    for (const TopicSource &source : topic.sources) {
        know(source.url, topic.id);
    }
    if (topic.capturedURL) {
        know(*topic.capturedURL, topic.id);
    }
}

std::optional<QUuid> LinkRegistry::topicOf(const QString &link) const {
    const auto known = m_known.constFind(canonicalLink(link));
    return known != m_known.cend() ? std::optional(*known) : std::nullopt;
}

void LinkRegistry::know(const QString &link, const QUuid &topic) {
    m_known.insert(canonicalLink(link), topic);
    // The file behind a page that shows it is the same thing.
    if (const QUrl fetched = readableLink(link); !fetched.isEmpty()) {
        m_known.insert(canonicalLink(fetched.toString(QUrl::FullyEncoded)), topic);
    }
}

LinkRegistry::Claim LinkRegistry::claim(const QString &link, qsizetype item) {
    const QString canonical = canonicalLink(link);
    if (const auto known = m_known.constFind(canonical); known != m_known.cend()) {
        return {Standing::Known, *known, 0};
    }
    const auto same = m_items.constFind(canonical);
    if (same != m_items.cend() && *same != item) {
        return {Standing::Same, {}, *same};
    }
    m_items.insert(canonical, item);
    return {};
}

void LinkRegistry::give(qsizetype item, const Claim &heir) {
    for (auto link = m_items.begin(); link != m_items.end();) {
        if (*link != item) {
            ++link;
        } else if (heir.standing == Standing::Known) {
            m_known.insert(link.key(), heir.topic);
            link = m_items.erase(link);
        } else {
            *link++ = heir.item;
        }
    }
}

} // namespace vorle
