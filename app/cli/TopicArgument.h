#pragma once

#include "app/cli/Command.h"
#include "base/OnDemand.h"
#include "core/Preferences.h"
#include "core/TopicStore.h"
#include "storage/StoreLock.h"

#include <QString>

namespace vorle::cli {

/// The topics for a command that changes them: the file is opened once `holdTopics` has ended.
struct TopicsToChange {
    std::function<QString()> file; ///< where it is; @throws std::system_error without a folder
    OnDemand<StoreLock> lock;
    OnDemand<TopicStore> store;
    OnDemand<Preferences> preferences;
};

/// These, out of the application's objects.
TopicsToChange topicsToChange(Application &app);

/// Waits for the right to change the topics, saying so when another command holds it. Where the app
/// holds it, the app runs the command: gives the status that this came to, and nothing is left to
/// do but end with it. The topics file must not have been opened before, save by the process that
/// holds the right already: what another one changed would be lost.
/// @throws std::system_error when the lock file cannot be opened, Cancelled, Failure as
/// forwardCommand()
[[nodiscard]] Task<std::optional<ExitStatus>> holdTopics(Context &context, TopicsToChange topics);

/// The topic a person named: its identity, or any beginning of it that no other topic shares, in
/// either case, with or without dashes.
/// @throws Failure  Usage when the text is no identity at all; Failed when no topic has it, when
///                  several have (told with their titles), or when the topics file is unreadable
TopicPtr topicByPrefix(const TopicStore &store, const QString &text);

} // namespace vorle::cli
