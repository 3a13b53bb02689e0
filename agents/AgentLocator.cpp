#include "agents/AgentLocator.h"
#include "base/Json.h"

#include <simdjson.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QVersionNumber>

#include <algorithm>
#include <filesystem>

namespace vorle {

namespace {

/// Larger than any sign-in file (Claude Code keeps its history of projects in there).
constexpr qint64 maxSignInFileBytes = 64'000'000;

std::optional<QString> executableIn(const QString &folder, const QString &name) {
    const QFileInfo file(folder + u'/' + name);
    return file.isFile() && file.isExecutable() ? std::optional(file.filePath()) : std::nullopt;
}

/// The folders of the Node versions that nvm installed, newest version first.
QStringList nvmFolders(const QString &home) {
    const QDir versions(home + QStringLiteral("/.nvm/versions/node"));
    QStringList names = versions.entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name);
    std::sort(names.begin(), names.end(), [](const QString &a, const QString &b) {
        const auto version = [](const QString &name) {
            return QVersionNumber::fromString(QStringView(name).mid(name.startsWith(u'v') ? 1 : 0));
        };
        return version(a) > version(b);
    });
    for (QString &name : names) {
        name = versions.filePath(name) + QStringLiteral("/bin");
    }
    return names;
}

/// Whether the text is a JSON object that holds the key `wanted`, whatever its value. Claude Code's
/// file can take megabytes, so no document is built.
bool holdsKey(const QByteArray &text, std::string_view wanted) {
    namespace od = simdjson::ondemand;
    const simdjson::padded_string padded(text.constData(), static_cast<std::size_t>(text.size()));
    od::parser parser;
    od::document document;
    od::object members;
    if (parser.iterate(padded).get(document) != simdjson::SUCCESS ||
        document.get_object().get(members) != simdjson::SUCCESS) {
        return false;
    }
    bool held = false;
    for (auto member : members) {
        std::string_view key;
        od::value value;
        if (member.unescaped_key().get(key) != simdjson::SUCCESS ||
            member.value().get(value) != simdjson::SUCCESS) {
            return false;
        }
        held = held || key == wanted;
    }
    return held;
}

} // namespace

AgentEnvironment AgentEnvironment::ofThisProcess() {
    AgentEnvironment environment;
    environment.variables = QProcessEnvironment::systemEnvironment();
    environment.userHome = QDir::homePath();
    return environment;
}

std::optional<QString> AgentEnvironment::testHome() const {
    const QString home = variables.value(QStringLiteral("VORLE_HOME"));
    return home.isEmpty() ? std::nullopt : std::optional(QDir::current().absoluteFilePath(home));
}

QProcessEnvironment AgentEnvironment::childVariables(const QString &executable) const {
    QProcessEnvironment child = variables;
    QStringList folders{QFileInfo(executable).path(), QStringLiteral("/opt/homebrew/bin"),
                        QStringLiteral("/usr/local/bin"), QStringLiteral("/usr/bin"),
                        QStringLiteral("/bin")};
    const QString oldPath = variables.value(QStringLiteral("PATH"));
    if (!oldPath.isEmpty()) {
        folders += oldPath;
    }
    if (QFileInfo(nodeFolder()).isDir()) {
        folders += nodeFolder();
    }
    child.insert(QStringLiteral("PATH"), folders.join(u':'));
    if (const auto apart = testHome()) {
        const QString codexHome = *apart + QStringLiteral("/.codex");
        std::filesystem::create_directories(codexHome.toStdString());
        child.insert(QStringLiteral("HOME"), *apart);
        child.insert(QStringLiteral("CLAUDE_CONFIG_DIR"), *apart);
        child.insert(QStringLiteral("CODEX_HOME"), codexHome);
    }
    return child;
}

AgentLocator::AgentLocator(AgentEnvironment environment, std::function<QString()> preferred)
    : m_environment(std::move(environment)), m_preferred(std::move(preferred)) {}

AgentKind AgentLocator::choose(std::optional<AgentKind> forced) const {
    if (forced) {
        return *forced;
    }
    const QString fromVariable = m_environment.variables.value(QStringLiteral("VORLE_AGENT"));
    if (const auto kind = json::fromRaw<AgentKind>(fromVariable)) {
        return *kind;
    }
    if (const auto kind = json::fromRaw<AgentKind>(m_preferred ? m_preferred() : QString())) {
        return *kind;
    }
    const bool onlyCodex = readiness(AgentKind::Claude) != AgentReadiness::Ready &&
                           readiness(AgentKind::Codex) == AgentReadiness::Ready;
    return onlyCodex ? AgentKind::Codex : AgentKind::Claude;
}

QStringList AgentLocator::folders() const {
    const QString home = m_environment.home();
    QStringList folders{home + QStringLiteral("/.local/bin")};
    folders += m_environment.sharedFolders;
    folders += {home + QStringLiteral("/.npm-global/bin"), home + QStringLiteral("/.claude/local"),
                home + QStringLiteral("/.volta/bin")};
    return folders + nvmFolders(home);
}

std::optional<QString> AgentLocator::locate(AgentKind kind) const {
    const QString name = json::rawText(kind);
    const QStringList all = folders();
    for (const QString &folder : all) {
        if (auto path = executableIn(folder, name)) {
            return path;
        }
    }
    return std::nullopt;
}

AgentReadiness AgentLocator::readiness(AgentKind kind) const {
    if (!locate(kind)) {
        return AgentReadiness::Missing;
    }
    return isSignedIn(kind) ? AgentReadiness::Ready : AgentReadiness::SignedOut;
}

QStringList AgentLocator::signInFiles(AgentKind kind) const {
    const bool claude = kind == AgentKind::Claude;
    const QString home = m_environment.home();
    QStringList files{
        home + (claude ? QStringLiteral("/.claude.json") : QStringLiteral("/.codex/auth.json"))};
    const QString own = m_environment.variables.value(claude ? QStringLiteral("CLAUDE_CONFIG_DIR")
                                                             : QStringLiteral("CODEX_HOME"));
    if (!m_environment.testHome() && QDir::isAbsolutePath(own)) {
        files += own + (claude ? QStringLiteral("/.claude.json") : QStringLiteral("/auth.json"));
    }
    return files;
}

bool AgentLocator::isSignedIn(AgentKind kind) const {
    const auto holds = [key = kind == AgentKind::Claude ? "oauthAccount"
                                                        : "tokens"](const QString &path) {
        QFile file(path);
        // A pipe in its place would hold us for ever.
        return QFileInfo(path).isFile() && file.open(QIODevice::ReadOnly) &&
               file.size() <= maxSignInFileBytes && holdsKey(file.readAll(), key);
    };
    return std::ranges::any_of(signInFiles(kind), holds);
}

} // namespace vorle
