#pragma once

#include "base/Async.h"

namespace vorle {
class Preferences;
class TopicStore;
} // namespace vorle

namespace vorle::cli {

/// What a command insists on. Main thread.

struct Context;

/// @throws Failure when the topics file is damaged
void requireReadable(const TopicStore &store);

/// Ends once the last change is on the disk, without holding up the app that runs the command.
/// @throws Failure when it did not get there, Cancelled
Task<> onceSaved(Context &context, TopicStore &store);
/// Waits for the disk, with all else: for a command that is alone in its process.
/// @throws Failure when the last change did not reach it
void requireSaved(TopicStore &store);
void requireSaved(Preferences &preferences);

} // namespace vorle::cli
