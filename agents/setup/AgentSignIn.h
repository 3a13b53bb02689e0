#pragma once

#include "agents/AgentLocator.h"
#include "base/Async.h"
#include "base/WebLink.h"

#include <chrono>
#include <functional>

namespace vorle {

/// Takes the page on which a sign-in is confirmed; called once at most. Main thread.
using ShowPage = std::function<void(const WebLink &)>;

/// Runs the agent's own login to its end, at most for `limit`, and says whether the user is signed
/// in then. Its input is the null device.
///
/// Codex's page is the first https address that it prints. Claude Code opens a page by itself,
/// which completes without help, and prints the address of another, which shows a code that nobody
/// could enter here: its own page is the one. On Linux what a login opens by itself is handed to
/// `show`, too (where it is Claude Code's) or dropped (Codex's, which is shown already): a browser
/// that it started would end with it. Where nothing can be run from the temporary directory, and on
/// a Mac, what a login opens by itself opens: Claude Code's page is then not told to `show`, and
/// Codex's comes once more beside the printed one, of the same address; the first that is confirmed
/// counts.
/// @throws AgentError (not found), std::system_error
/// @throws Cancelled once the login, ended because of `cancel`, is gone
Task<bool> signInAgent(const AgentLocator &agents, AgentKind kind, ShowPage show,
                       std::chrono::milliseconds limit, CancelToken cancel);

} // namespace vorle
