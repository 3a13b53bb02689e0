#pragma once

#include "core/TopicRecords.h"

#include <QDateTime>
#include <QObject>

#include <optional>

namespace vorle {

/// The moment a run last came upon a link that a set-aside topic has: a known link makes no new
/// topic, and its coming back is news of that one all the same.
struct Find {
    QUuid topic;
    QDateTime at;
    json::Rest unknown = {}; ///< keys of a later version

    static constexpr auto jsonFields() {
        return std::tuple(json::field("topic", &Find::topic), json::field("at", &Find::at));
    }
    static constexpr auto jsonRest() { return &Find::unknown; }
    bool operator==(const Find &) const = default;
};

/// The finds of all topics, in "found-again.json": see TopicRecords for how they are kept. Main
/// thread; the store and the clock must outlive it, and it must outlive every save under way.
class RediscoveryLog final : public QObject {
    Q_OBJECT

public:
    RediscoveryLog(const TopicStore &store, const Clock &clock);
    static QString fileName() { return QStringLiteral("found-again.json"); }

    /// A run came upon this topic's link now, whatever brought it. Only a topic of the reserve is
    /// kept; of any other it is no news. The task ends as TopicRecords::add does.
    Task<> record(QUuid topic);

    /// Whether the topic was found again after that moment.
    bool isSince(const QUuid &topic, const QDateTime &moment);
    /// The topics that were ever found again.
    QList<QUuid> topics() { return m_rediscoveries.all().keys(); }

Q_SIGNALS:
    /// It was found again just now.
    void found(const QUuid &topic);

private:
    const TopicStore &m_store;
    const Clock &m_clock;
    TopicRecords<Find> m_rediscoveries;
};

} // namespace vorle
