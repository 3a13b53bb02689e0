#pragma once

#include "desktop/InboxFolder.h"

#include <QHash>
#include <QString>

namespace vorle {

/// Drops that are done with and still stand in their folder, because the system did not let them
/// leave it. Kept in "drops.json" beside the topics, so that a new start does not take them in a
/// second time. Any thread, one at a time; waits for the disk.
class StuckDrops {
public:
    struct Stuck {
        InboxFolder::State state;
        bool goesAside = false; ///< it is to be kept, not removed

        bool operator==(const Stuck &) const = default;
    };
    using Drops = QHash<QByteArray, Stuck>; ///< by their names

    /// `topicsFile` may be empty: then nothing is kept.
    explicit StuckDrops(const QString &topicsFile);

    /// None where nothing was kept, or it cannot be read, which is logged: those are taken in once
    /// more then.
    Drops load() const;
    /// What the disk refuses is logged.
    void save(const Drops &drops) const;

private:
    QString m_file;
};

} // namespace vorle
