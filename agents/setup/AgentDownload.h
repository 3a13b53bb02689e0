#pragma once

#include "agents/AgentLocator.h"
#include "agents/setup/Downloader.h"
#include "base/Async.h"

#include <QString>
#include <QUrl>

namespace vorle {

class SignatureCheck;

/// Where agents come from on a Mac, and the tools that put them in place.
struct AgentSources {
    /// For a processor as QSysInfo names it.
    static AgentSources forProcessor(const QString &name);

    QUrl codexReleases{QStringLiteral("https://github.com/openai/codex/releases/latest/download/")};
    /// The program in there, by the name that its archive has too.
    QString codexBuild = QStringLiteral("codex-aarch64-apple-darwin");
    qint64 maxProgram = 1'000'000'000; ///< in bytes, several times what it takes unpacked
    QUrl claudeScript{QStringLiteral("https://claude.ai/install.sh")};
    QString tar = QStringLiteral("/usr/bin/tar");
    QString bash = QStringLiteral("/bin/bash");
};

/// Who must have signed Codex, in the language of Apple's code signing.
QString codexRequirement();

/// What an installation by download works with; all of it outlives it.
struct AgentDownload {
    const AgentLocator &agents;
    Downloader downloader;
    const SignatureCheck &signatures;
    AgentSources sources;

    /// Downloads Codex, unpacks the program alone, has its signature checked before anything runs
    /// it, and puts it into ".local/bin" of the home, in the place of one that is there: in one
    /// step, and last, so that whatever fails or stops it leaves that one as it was.
    /// @throws SetupError, std::system_error, Cancelled
    Task<> installCodex(TellProgress progress, CancelToken cancel) const;

    /// Downloads Claude Code's own installer and runs it: it verifies what it brings, and puts it
    /// into the same folder. @throws as installCodex
    Task<> installClaude(TellProgress progress, CancelToken cancel) const;
};

} // namespace vorle
