#pragma once

#include "core/Topic.h"

#include <QDateTime>
#include <QFile>
#include <QString>
#include <QTemporaryDir>

#include <sys/resource.h>

#include <csignal>
#include <functional>

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

inline QByteArray contentsOf(const QString &path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

inline void fill(const QString &path, const QByteArray &bytes) {
    QFile file(path);
    file.open(QIODevice::WriteOnly | QIODevice::Truncate);
    file.write(bytes);
}

/// Runs `work` while no file may grow past that many bytes, which fails a write in the middle as a
/// full disk does.
inline void withFileSizeLimit(rlim_t bytes, const std::function<void()> &work) {
    const auto before = std::signal(SIGXFSZ, SIG_IGN);
    rlimit old{};
    ::getrlimit(RLIMIT_FSIZE, &old);
    const rlimit small{bytes, old.rlim_max};
    ::setrlimit(RLIMIT_FSIZE, &small);
    work();
    ::setrlimit(RLIMIT_FSIZE, &old);
    std::signal(SIGXFSZ, before);
}

} // namespace vorle::test
