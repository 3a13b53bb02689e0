#include "agents/setup/AgentSetup.h"

#include "base/Log.h"
#include "storage/FileLock.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <memory>
#include <system_error>

namespace vorle {

namespace {

constexpr std::array agentKinds{AgentKind::Claude, AgentKind::Codex};

/// The right to install agents into this home, for as long as it lives; null while another process
/// has it.
Task<std::shared_ptr<FileLock>> rightToInstall(QString home) {
    return onPool([folder = home + QStringLiteral("/.local/state/vorle")] {
        std::filesystem::create_directories(folder.toStdString());
        auto lock = std::make_shared<FileLock>(folder + QStringLiteral("/install"));
        return lock->tryLock() ? lock : nullptr;
    });
}

} // namespace

Task<Installed> AgentSetup::installAny(AgentKind kind, TellProgress progress,
                                       CancelToken cancel) const {
    const Gate::Permit turn = co_await m_turn.enter(cancel);
    const auto right = co_await rightToInstall(agents().environment().home());
    if (!right) {
        throw SetupError::underWay();
    }
    cancel.throwIfCancelled();
    if (m_parts.signatures == nullptr) {
        co_return co_await installPackage(m_parts.agents, kind, cancel);
    }
    const AgentDownload download{m_parts.agents, Downloader(m_parts.http), *m_parts.signatures,
                                 m_parts.sources};
    if (kind == AgentKind::Codex) {
        co_await download.installCodex(std::move(progress), cancel);
    } else {
        co_await download.installClaude(std::move(progress), cancel);
    }
    co_return Installed{InstallEnd::Checked, agents().locate(kind).value_or(QString())};
}

Task<Installed> AgentSetup::install(AgentKind kind, TellProgress progress,
                                    CancelToken cancel) const {
    logLine(QStringLiteral("installing ") + displayName(kind));
    try {
        Installed installed = co_await installAny(kind, std::move(progress), cancel);
        if (installed.end == InstallEnd::Silent) {
            logLine(QStringLiteral("installing %1: it did not tell its version in time")
                        .arg(displayName(kind)));
        }
        co_return installed;
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

Task<bool> AgentSetup::recover(CancelToken cancel) const {
    const auto isBroken = [this](AgentKind kind) { return isInstallationBroken(agents(), kind); };
    // A download takes its place in one step.
    if (m_parts.signatures != nullptr || std::ranges::none_of(agentKinds, isBroken)) {
        co_return false;
    }
    const Gate::Permit turn = co_await m_turn.enter(cancel);
    bool isMended = false;
    try {
        const auto right = co_await rightToInstall(agents().environment().home());
        for (const AgentKind kind : agentKinds) {
            if (right) { // else it is under way
                const bool mended = co_await mendInstallation(agents(), kind, cancel);
                isMended = isMended || mended;
            }
        }
    } catch (const std::system_error &error) {
        logLine(QStringLiteral("installing: ") + QString::fromLocal8Bit(error.what()));
    }
    co_return isMended;
}

Task<bool> AgentSetup::signIn(AgentKind kind, ShowPage show, CancelToken cancel) const {
    logLine(QStringLiteral("signing in to ") + displayName(kind));
    co_return co_await signInAgent(m_parts.agents, kind, std::move(show), m_parts.signInLimit,
                                   cancel);
}

} // namespace vorle
