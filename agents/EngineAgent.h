#pragma once

#include "agents/AgentError.h"
#include "agents/AgentLocator.h"
#include "agents/StructuredOutput.h"
#include "base/Async.h"

#include <QString>

#include <chrono>
#include <functional>
#include <optional>

namespace vorle {

/// Whether the agent may search and read the web during a call.
enum class WebAccess { Off, On };

struct AgentRequest {
    QString prompt;
    QString schema;               ///< a JSON Schema, one object
    std::optional<QString> model; ///< absent or empty: the agent's default
    WebAccess web = WebAccess::Off;
};

/// How long a call may take before its process is ended.
struct AgentTimeouts {
    std::chrono::milliseconds withWeb = std::chrono::seconds(600);
    std::chrono::milliseconds withoutWeb = std::chrono::seconds(300);
};

/// Runs the user's own AI command line, one process a call, and hands back its structured answer.
/// Calls are independent and may overlap. Main thread; must outlive every call under way.
class EngineAgent {
public:
    EngineAgent(AgentEnvironment environment, std::function<QString()> preferred,
                AgentTimeouts timeouts = {});

    const AgentLocator &locator() const { return m_locator; }

    /// What is to be done with the agents on this machine before they are relied upon, as putting
    /// one back whose installation was killed. It throws nothing but Cancelled.
    using Mending = std::function<Task<>(CancelToken)>;
    void setMending(Mending mending) { m_mending = std::move(mending); }
    /// Does that. For who asks much, before the agent is chosen. @throws Cancelled
    Task<> mended(CancelToken cancel) const;

    /// @throws AgentError (not found, signed out) unless the agent can be called. `run` itself does
    /// not look at the sign-in: an Asker does before each of its calls, and whoever asks much looks
    /// before its first step.
    void check(AgentKind kind) const;

    /// One call. Nothing is retried here. So that Claude Code takes the prompt literally, "Task:"
    /// is put before one that begins with "-" or "/" (an option, a command), and an invisible word
    /// joiner before each "@" that could name a file (it would be read and sent); where the answer
    /// repeats such a mention its joiner is taken out again, and any other is left to the agent.
    /// They count in `promptLimit`, 3 bytes each.
    /// @throws AgentError: not found (before anything is written), stopped, timed out, or a
    ///   message: an unreadable answer, the agent's own refusal, a prompt over `promptLimit`
    /// @throws std::system_error when a file or the launch is refused
    /// @throws Cancelled once the process, ended because of `cancel`, is gone
    Task<AgentResult> run(AgentRequest request, std::optional<AgentKind> forced = std::nullopt,
                          CancelToken cancel = {});

    /// The most bytes of UTF-8 a prompt may take, where the system sets a limit: Claude Code takes
    /// its prompt as an argument, and Linux refuses one that with its closing zero takes more than
    /// 32 pages of 4096 bytes (MAX_ARG_STRLEN).
    static std::optional<qsizetype> promptLimit(AgentKind kind);

private:
    AgentLocator m_locator;
    AgentTimeouts m_timeouts;
    Mending m_mending;
};

} // namespace vorle
