#pragma once

#include "base/Json.h"
#include "storage/DurableFile.h"

#include <QDateTime>
#include <QString>

#include <optional>

namespace vorle {

/// The path of a file that is kept beside a topics file: that name in the same folder, behind the
/// topics file's own ("demo-topics-runs.json") when it is another than "topics.json", since the
/// demonstration's are not the user's. Empty for an empty one, a preview's. Pure, any thread.
QString sidecarPath(const QString &topicsFile, const QString &name);

/// What a file holds that is about to be replaced; nothing when there is none. One that was read
/// and holds no T is kept aside, under the date `now`, and counts as none. Any thread.
/// @throws std::system_error for what the system does not let be read, which is not to be replaced,
///         or be kept aside
template <class T>
std::optional<T> replaceable(const QString &file, const QDateTime &now) {
    const auto bytes = readWhole(file);
    if (!bytes) {
        return std::nullopt;
    }
    try {
        return json::decode<T>(*bytes);
    } catch (const json::DecodeError &) {
        keepCopy(file, backupName(file, now));
        return std::nullopt;
    }
}

} // namespace vorle
