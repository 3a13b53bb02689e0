#pragma once

#include "core/RediscoveryLog.h"
#include "core/TopicStore.h"

#include <QHash>
#include <QList>
#include <QPointer>
#include <QUuid>
#include <QVarLengthArray>

namespace vorle {

/// Which set-aside topics have moved since then: a run came upon one of its links again (see
/// RediscoveryLog); or a topic found since, and not dismissed, is about the same dependency or the
/// same GitHub repository, or shares a link with it. Setting it aside again starts afresh.
///
/// Knows topics by their dependency, repositories and links; most of the strings are the topics'
/// own, shared. Main thread.
class ReserveActivity {
public:
    /// Takes note of what a topic is about. Calling it again for a changed topic is right.
    void add(const Topic &topic);
    /// Forgets the topics, and makes room for so many.
    void clear(qsizetype room) {
        m_about.clear();
        m_about.reserve(room);
    }
    /// What the runs came upon again counts from now on.
    void observe(RediscoveryLog &finds) { m_rediscoveries = &finds; }

    /// Whether a reserved topic has moved, by what the store holds now.
    bool hasMoved(const Topic &reserved, const TopicStore &store) const;
    /// The other topics noted that are about the same thing.
    QList<QUuid> relatedTopics(const Topic &topic) const;

private:
    using Topics = QVarLengthArray<QUuid, 1>; // most are alone

    QHash<QString, Topics> m_about; // by dependency, by repository, and by link
    QPointer<RediscoveryLog> m_rediscoveries;
};

} // namespace vorle
