#pragma once

#include "core/TopicStore.h"

#include <QHash>
#include <QList>
#include <QUuid>

namespace vorle {

/// Which set-aside topics have moved: a topic found since then, and not dismissed, is about the
/// same dependency or shares a link with it. Setting it aside again starts afresh.
///
/// Knows topics by their dependency and links; the strings are the topics' own, shared. Main
/// thread.
class Comebacks {
public:
    /// Takes note of what a topic is about. Calling it again for a changed topic is right.
    void note(const Topic &topic);
    void clear() { m_about.clear(); }

    /// Whether a reserved topic has moved, by what the store holds now.
    bool hasMoved(const Topic &reserved, const TopicStore &store) const;
    /// The other topics noted that are about the same thing.
    QList<QUuid> kin(const Topic &topic) const;

private:
    QHash<QString, QList<QUuid>> m_about; // by dependency, and by link
};

} // namespace vorle
