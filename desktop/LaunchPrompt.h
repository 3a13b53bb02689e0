#pragma once

#include "core/Topic.h"

#include <QString>

namespace vorle {

/// Where the agent that reads the prompt will be.
enum class LaunchTarget { ProjectFolder, Elsewhere };

/// Hands a topic over to an agent in French: labelled lines for what the topic has, then the
/// request. Never empty, and never begins with a sign an agent takes for an option or a command.
///
/// Titles, reasons and addresses come from strangers: each is held to one line, so that none can
/// pass for another label or for the request, without anything a terminal obeys or a reader cannot
/// see; of the addresses only those of pages are named. A path that a text mentions with "@", and
/// that leads out of the project, gets an invisible word joiner, because the agent would read the
/// file; "@scope/package" stays as it is. The whole takes less than 128 KB in UTF-8 and so fits
/// in one argument of a process on any system. Pure.
QString launchPrompt(const Topic &topic, LaunchTarget target);

} // namespace vorle
