#pragma once

#include "core/RediscoveryLog.h"
#include "core/TopicStore.h"

#include <QHash>
#include <QList>
#include <QPointer>
#include <QUuid>
#include <QVarLengthArray>

#include <limits>

namespace vorle {

/// Which set-aside topics have moved since then: a run came upon one of its links again (see
/// RediscoveryLog); or a topic found since, and not dismissed, is about the same dependency or the
/// same GitHub repository, or shares a link with it. Setting it aside again starts afresh.
///
/// Knows topics by their dependency, repositories and links; most of the strings are the topics'
/// own, shared. What was found before all that is set aside can be news of none of it, and is not
/// looked at. Main thread.
class ReserveActivity {
public:
    /// Takes note of what the store holds, and of nothing else.
    void load(const TopicStore &store);
    /// Takes note of a topic of the store that came or changed.
    void note(const Topic &topic, const TopicStore &store);
    /// What the runs came upon again counts from now on.
    void observe(RediscoveryLog &finds) { m_rediscoveries = &finds; }

    /// Whether a reserved topic has moved, by what the store holds now.
    bool hasMoved(const Topic &reserved, const TopicStore &store) const;
    /// The other topics noted that are about the same thing.
    QList<QUuid> relatedTopics(const Topic &topic) const;

private:
    using Topics = QVarLengthArray<QUuid, 1>; // most are alone

    void add(const Topic &topic);
    void reachBack(qint64 since, const TopicStore &store);

    QHash<QString, Topics> m_about; // by dependency, by repository, and by link
    qint64 m_since = std::numeric_limits<qint64>::max(); // what was found later is known, in ms
    QPointer<RediscoveryLog> m_rediscoveries;
};

} // namespace vorle
