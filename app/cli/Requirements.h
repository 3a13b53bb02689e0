#pragma once

namespace vorle {
class Preferences;
class TopicStore;
} // namespace vorle

namespace vorle::cli {

/// What a command insists on. Main thread.

/// @throws Failure when the topics file is damaged
void requireReadable(const TopicStore &store);

/// Waits for the disk. @throws Failure when the last change did not reach it
void requireSaved(TopicStore &store);
void requireSaved(Preferences &preferences);

} // namespace vorle::cli
