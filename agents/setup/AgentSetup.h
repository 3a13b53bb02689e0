#pragma once

#include "agents/setup/AgentDownload.h"
#include "agents/setup/AgentPackage.h"
#include "agents/setup/AgentSignIn.h"
#include "agents/setup/SetupError.h"

#include <chrono>

namespace vorle {

/// Gets an agent working for somebody who never used a terminal: installs its command line, and has
/// them sign in with their own account. Both are told in the log. Main thread; what it is given
/// outlives it, and it outlives what it has under way.
class AgentSetup {
public:
    struct Parts {
        const AgentLocator &agents;
        OnDemand<HttpClient> http;
        /// With it agents are downloaded and checked; without it (null: the system has no such
        /// check) they come as npm packages, which npm checks.
        const SignatureCheck *signatures = nullptr;
        AgentSources sources = {};
        std::chrono::milliseconds signInLimit = std::chrono::minutes(10);
    };

    explicit AgentSetup(Parts parts) : m_parts(std::move(parts)) {}

    /// Installs the agent, in the place of one that is there already. `progress`, which may be
    /// empty, is told of a download; what takes its time otherwise tells nothing. One at a time in
    /// a home: a second of this object's waits for the first.
    /// @throws SetupError (underWay where another process is at it), std::system_error
    /// @throws Cancelled once what was under way has ended
    Task<Installed> install(AgentKind kind, TellProgress progress = {},
                            CancelToken cancel = {}) const;

    /// Takes back what an installation left whose process was killed, and touches none that lives.
    /// At a start and whenever it matters how the agents are: reads a few folders where there is
    /// nothing to do. True where it changed something; what the system refuses is told in the log.
    /// @throws Cancelled
    Task<bool> recover(CancelToken cancel = {}) const;

    /// Whether the user is signed in, once the agent's own login has ended; see signInAgent.
    /// @throws AgentError (not found), std::system_error, Cancelled
    Task<bool> signIn(AgentKind kind, ShowPage show, CancelToken cancel = {}) const;

    const AgentLocator &agents() const { return m_parts.agents; }

private:
    Task<Installed> installAny(AgentKind kind, TellProgress progress, CancelToken cancel) const;

    Parts m_parts;
    mutable Gate m_turn{1}; // to install
};

} // namespace vorle
