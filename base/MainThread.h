#pragma once

#include <source_location>
#include <string_view>

namespace vorle {

/// Stops the program when called from another thread than the one that runs the application
/// object, naming `subject` (as "vorle/TopicStore") and the caller's line: objects confined to
/// the main thread call it first in every operation, since a race there would lose topics.
/// Before an application object exists every thread counts as the main one.
void requireMainThread(std::string_view subject,
                       std::source_location where = std::source_location::current());

} // namespace vorle
