#pragma once

#include "agents/AgentLocator.h"
#include "base/Async.h"
#include "core/Preferences.h"
#include "core/Topic.h"
#include "desktop/TerminalStart.h"
#include "platform/LinkOpener.h"
#include "platform/Pasteboard.h"
#include "platform/Terminals.h"

#include <QString>

#include <exception>
#include <optional>

namespace vorle {

/// Why a first step could not be begun. Its text is for the user.
class LaunchError final : public std::exception {
public:
    /// "le terminal choisi est introuvable."
    static LaunchError terminalNotFound();
    /// "Le Terminal n’a pas pu être ouvert : " and what the system said, on one line.
    static LaunchError terminalFailed(const QString &detail);
    /// The prompt is on the pasteboard all the same.
    static LaunchError browserFailed();

    const QString &text() const { return m_text; }
    /// The text, in UTF-8.
    const char *what() const noexcept override { return m_utf8.constData(); }

private:
    explicit LaunchError(const QString &text) : m_text(text), m_utf8(text.toUtf8()) {}

    QString m_text;
    QByteArray m_utf8;
};

/// Turns a kept topic into a working session with the user's agent: in the terminal, where the
/// topic is of a watched project, else in the agent's web chat. Main thread; what it is made of and
/// it itself outlive every call.
class ClaudeLauncher {
public:
    enum class Where { Terminal, WebChat };

    struct Parts {
        const AgentLocator &agents;
        const Preferences &preferences;
        const Terminals &terminals;
        Pasteboard &pasteboard;
        LinkOpener &links;
    };

    explicit ClaudeLauncher(Parts parts, TerminalTimeouts patience = {})
        : m_parts(parts), m_timeouts(patience) {}

    /// What the key for it is called, with the names of the chosen agent: "Lancer dans Claude Code
    /// ou approfondir avec Claude". Reads files (see AgentLocator::choose).
    QString label() const;

    /// Takes this topic's first step: in the terminal when its project is watched. Gives where.
    ///
    /// In the terminal the user chose, a window opens in the project's folder with the agent at
    /// work on the prompt; it stays a login shell afterwards. The prompt and the script lie in the
    /// temporary directory, under names nobody can foresee, and remove themselves; where no window
    /// opens they are removed here.
    ///
    /// For the web chat the prompt is put on the pasteboard, then the chat's plain address opened:
    /// nothing of the topic is sent before the user pastes it.
    ///
    /// @throws LaunchError, AgentError (not found), std::system_error (a file)
    Task<Where> takeFirstStep(Topic topic);

    /// What to tell the user once it is taken: in the chat the prompt is still to be pasted. Empty
    /// where the window speaks for itself.
    QString hint(Where where) const;

private:
    std::optional<QString> folderOf(const Topic &topic) const;
    QString executable() const;
    void openChat(const QString &prompt) const;
    Task<> openTerminal(QString prompt, QString folder) const;

    Parts m_parts;
    TerminalTimeouts m_timeouts;
};

} // namespace vorle
