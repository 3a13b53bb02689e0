#include "agents/setup/AgentSetup.h"

#include "agents/setup/AgentPackage.h"
#include "base/Log.h"

#include <system_error>

namespace vorle {

Task<> AgentSetup::installAny(AgentKind kind, TellProgress progress, CancelToken cancel) const {
    if (m_parts.signatures == nullptr) {
        co_await installPackage(m_parts.agents, kind, cancel);
        co_return;
    }
    const AgentDownload download{m_parts.agents, Downloader(m_parts.http), *m_parts.signatures,
                                 m_parts.sources};
    if (kind == AgentKind::Codex) {
        co_await download.installCodex(std::move(progress), cancel);
    } else {
        co_await download.installClaude(std::move(progress), cancel);
    }
}

Task<> AgentSetup::install(AgentKind kind, TellProgress progress, CancelToken cancel) const {
    logLine(QStringLiteral("installing ") + displayName(kind));
    try {
        co_await installAny(kind, std::move(progress), cancel);
    } catch (const SetupError &error) {
        logLine(QStringLiteral("installing %1: %2").arg(displayName(kind), error.description()));
        throw;
    } catch (const std::system_error &error) {
        logLine(QStringLiteral("installing %1: the system refused it, error %2")
                    .arg(displayName(kind))
                    .arg(error.code().value()));
        throw;
    }
}

Task<bool> AgentSetup::signIn(AgentKind kind, ShowPage show, CancelToken cancel) const {
    logLine(QStringLiteral("signing in to ") + displayName(kind));
    co_return co_await signInAgent(m_parts.agents, kind, std::move(show), m_parts.signInLimit,
                                   cancel);
}

} // namespace vorle
