#pragma once

#include "core/Topic.h"
#include "tests/support/Files.h"

#include <QDateTime>
#include <QString>
#include <QTemporaryDir>

namespace vorle::test {

/// A clock that stands where it is put.
class FixedClock final : public Clock {
public:
    QDateTime now() const override { return moment; }
    QDateTime moment = QDateTime(QDate(2026, 11, 2), QTime(9, 30), Qt::UTC);
};

inline Topic sampleTopic(const QString &title, TopicStatus status = TopicStatus::Inbox) {
    Topic topic;
    topic.id = QUuid::createUuid();
    topic.title = title;
    topic.score = 7;
    topic.minutes = 20;
    topic.summary = QStringLiteral("Résumé de ") + title;
    topic.sources = {{QStringLiteral("Page"), QStringLiteral("https://example.org/") + title}};
    topic.status = status;
    topic.foundAt = QDateTime(QDate(2026, 11, 1), QTime(8, 0), Qt::UTC);
    topic.seenText = QByteArray("« texte lu »\n\t\"guillemets\"").repeated(20);
    return topic;
}

} // namespace vorle::test
