#include "desktop/ClaudeLauncher.h"

#include "agents/AgentError.h"
#include "agents/PromptText.h"
#include "agents/TemporaryFiles.h"
#include "base/French.h"
#include "base/Json.h"
#include "base/WebLink.h"
#include "desktop/LaunchPrompt.h"
#include "desktop/LaunchScript.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <system_error>

namespace vorle {

namespace {

constexpr qsizetype maxDetail = 300;
constexpr char16_t claudeChat[] = u"https://claude.ai/new";
constexpr char16_t chatGptChat[] = u"https://chatgpt.com/";

void makeExecutable(const QString &path) {
    const auto everybody = QFile::ReadOwner | QFile::ExeOwner | QFile::ReadGroup | QFile::ExeGroup |
                           QFile::ReadOther | QFile::ExeOther;
    if (!QFile::setPermissions(path, everybody | QFile::WriteOwner)) {
        throw std::system_error(EPERM, std::generic_category(), path.toStdString());
    }
}

} // namespace

LaunchError LaunchError::terminalNotFound() {
    return LaunchError(French::tr("le terminal choisi est introuvable."));
}

LaunchError LaunchError::terminalFailed(const QString &detail) {
    const QString told = oneLine(detail, maxDetail);
    return LaunchError(French::tr("Le Terminal n’a pas pu être ouvert : ") +
                       (told.isEmpty() ? French::tr("il s’est arrêté aussitôt.") : told));
}

LaunchError LaunchError::browserFailed() {
    return LaunchError(French::tr("Le navigateur n’a pas pu être ouvert. La consigne est copiée."));
}

QString ClaudeLauncher::label() const {
    const AgentKind kind = m_parts.agents.choose();
    return French::tr("Lancer dans %1 ou approfondir avec %2")
        .arg(displayName(kind), chatName(kind));
}

std::optional<QString> ClaudeLauncher::folderOf(const Topic &topic) const {
    const auto &projects = m_parts.preferences.settings().projects;
    const auto project = topic.project ? projects.constFind(*topic.project) : projects.constEnd();
    return project == projects.constEnd() || project->isEmpty() ? std::nullopt
                                                                : std::optional(*project);
}

QString ClaudeLauncher::hint(Where where) const {
    return where == Where::Terminal ? QString()
                                    : French::tr("La consigne est copiée : colle-la dans %1.")
                                          .arg(chatName(m_parts.agents.choose()));
}

QString ClaudeLauncher::executable() const {
    const AgentKind kind = m_parts.agents.choose();
    std::optional<QString> path;
    const QString named =
        m_parts.agents.environment().variables.value(QStringLiteral("VORLE_CLAUDE_BIN"));
    if (kind == AgentKind::Claude && !named.isEmpty()) {
        const QFileInfo file(named);
        if (file.isFile() && file.isExecutable()) {
            path = file.absoluteFilePath();
        }
    } else {
        path = m_parts.agents.locate(kind);
    }
    if (!path) {
        throw AgentError::notFound(displayName(kind));
    }
    return *path;
}

Task<ClaudeLauncher::Where> ClaudeLauncher::takeFirstStep(Topic topic) {
    const auto folder = folderOf(topic);
    if (!folder) {
        openChat(launchPrompt(topic, LaunchTarget::Elsewhere));
        co_return Where::WebChat;
    }
    co_await openTerminal(launchPrompt(topic, LaunchTarget::ProjectFolder), *folder);
    co_return Where::Terminal;
}

void ClaudeLauncher::openChat(const QString &prompt) const {
    m_parts.pasteboard.replace(prompt);
    const bool claude = m_parts.agents.choose() == AgentKind::Claude;
    const auto chat = WebLink::from(QString::fromUtf16(claude ? claudeChat : chatGptChat));
    if (!chat || !m_parts.links.open(*chat)) {
        throw LaunchError::browserFailed();
    }
}

Task<> ClaudeLauncher::openTerminal(QString prompt, QString folder) const {
    const QFileInfo info(folder);
    if (!info.isDir()) {
        throw LaunchError::terminalFailed(
            French::tr("le dossier du projet est introuvable (%1).").arg(folder));
    }
    const QString agent = executable();
    TemporaryFile promptFile(u"vorle-launch-", u".txt");
    TemporaryFile scriptFile(u"vorle-launch-", u".command");
    const LaunchPlan plan{agent, info.absoluteFilePath(), promptFile.path(), scriptFile.path()};
    const LaunchTexts texts = launchTexts(plan, m_parts.terminals.shells());
    const auto command = m_parts.terminals.command(
        json::rawText(m_parts.preferences.settings().terminal), {scriptFile.path(), texts.line});
    if (!command) {
        throw LaunchError::terminalNotFound();
    }
    promptFile.write(prompt.toUtf8());
    scriptFile.write(texts.script.toUtf8());
    makeExecutable(scriptFile.path());

    std::optional<QString> failure;
    try {
        failure = co_await startTerminal(*command, scriptFile.path(), m_timeouts);
    } catch (const std::system_error &error) {
        failure = QString::fromUtf8(error.what());
    }
    if (failure && !command->absence.isEmpty() && failure->contains(command->absence)) {
        throw LaunchError::terminalNotFound();
    }
    if (failure) {
        throw LaunchError::terminalFailed(*failure);
    }
    promptFile.keep();
    scriptFile.keep();
}

} // namespace vorle
