#pragma once

#include "core/TopicStore.h"

#include <QDateTime>
#include <QList>
#include <QTimeZone>

#include <memory>

namespace vorle::test {

inline const QDateTime october(QDate(2026, 10, 1), QTime(8, 0), Qt::UTC);

inline Topic decision(TopicStatus status, const char *kind = "article") {
    Topic topic;
    topic.id = QUuid::createUuid();
    topic.title = QStringLiteral("Un titre");
    topic.kind = QString::fromUtf8(kind);
    topic.score = 5;
    topic.minutes = 20;
    topic.status = status;
    topic.foundAt = october.addDays(-1);
    topic.triagedAt = october;
    return topic;
}

/// Topics put together one group at a time.
class DecidedTopics {
public:
    template <class Edit>
    DecidedTopics &add(int count, TopicStatus status, Edit edit) {
        for (int i = 0; i < count; ++i) {
            Topic topic = decision(status);
            edit(topic);
            topics += std::make_shared<const Topic>(std::move(topic));
        }
        return *this;
    }
    DecidedTopics &add(int count, TopicStatus status) {
        return add(count, status, [](Topic &) {});
    }
    DecidedTopics &add(int count, TopicStatus status, const char *kind) {
        return add(count, status, [&](Topic &topic) { topic.kind = QString::fromUtf8(kind); });
    }

    QList<TopicPtr> topics;
};

/// Enough decisions for rules to be tried, which make none themselves: kinds are unknown words.
inline DecidedTopics quiet() { return DecidedTopics().add(25, TopicStatus::Reserve, "billet"); }

} // namespace vorle::test
