#pragma once

#include <QString>

namespace vorle {

/// The path of a file that is kept beside a topics file: that name in the same folder, behind the
/// topics file's own ("demo-topics-runs.json") when it is another than "topics.json", since the
/// demonstration's are not the user's. Empty for an empty one, a preview's. Pure, any thread.
QString besideTopics(const QString &topicsFile, const QString &name);

} // namespace vorle
