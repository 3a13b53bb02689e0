#pragma once

#include "app/cli/Command.h"
#include "search/capture/LinkCapture.h"

namespace vorle::cli {

/// Waits until a captured link that was started on is read and judged, showing that it is. Where
/// the command has a process of its own, a Ctrl-C ends that work; else it goes on without the
/// terminal. `capture` outlives it.
/// @throws Failure with the reason that it could not be judged for, Cancelled
Task<> readNow(Context &context, LinkCapture &capture, QUuid id);

} // namespace vorle::cli
