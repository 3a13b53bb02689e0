#pragma once

#include "core/Topic.h"

#include <QList>
#include <QString>
#include <QStringList>
#include <QTimeZone>

#include <functional>

namespace vorle {

/// What writing into a folder came to.
struct WrittenFiles {
    qsizetype written = 0;   ///< new, or said something else before
    qsizetype unchanged = 0; ///< said it already
    QStringList left;        ///< changed by somebody else since, and left as they are: their names
    QString aside; ///< where an earlier archive was kept that has topics this one lacks; or ""
};

/// Writes each topic as a note (see topicNote) into `folder`, which is made when it is missing.
///
/// A note keeps the name it got first, whatever becomes of the topic's title, so that links to it
/// hold: title and beginning of the identity ("une-faille-de-zlib-1f2e3d4c.md"). What was written
/// under which name is kept in the folder too, in ".vorle-notes.json" (one that cannot be read is
/// kept aside, under the date `now`). A note that somebody changed since is left as it is, and so
/// is every file that this did not write; notes of topics that are there no more stay. `stopped` is
/// asked before each note. Any thread.
/// @throws Cancelled once `stopped` says so; std::system_error for the first file that cannot be
/// read or written, with its path; what
///         was written by then stands
WrittenFiles writeTopicNotes(const QList<Topic> &topics, const QString &folder,
                             const QDateTime &now, const std::function<bool()> &stopped = {},
                             const QTimeZone &zone = QTimeZone::systemTimeZone());

} // namespace vorle
