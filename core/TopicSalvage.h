#pragma once

#include "core/Topic.h"

#include <QByteArray>
#include <QList>

namespace vorle {

/// What can still be read of a topics file that does not decode as a whole.
struct TopicSalvage {
    QList<Topic> topics;
    qsizetype left = 0; ///< entries that could not be read

    qsizetype entries() const { return topics.size() + left; }
};

/// Reads each entry of the list by itself. Where the text is torn, the next entry is known by the
/// place where a line of entries begins, and a text that was never closed ends with its line. Takes
/// time in proportion to the file. Pure, any thread. @throws std::bad_alloc
TopicSalvage salvageTopics(const QByteArray &utf8);

} // namespace vorle
