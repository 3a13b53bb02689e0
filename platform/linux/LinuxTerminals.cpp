#include "platform/linux/LinuxTerminals.h"

#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

#include <pwd.h>
#include <unistd.h>

namespace vorle {

namespace {

struct Known {
    const char *name;    ///< as the settings call it
    const char *program; ///< as the search path does
    const char *runs;    ///< what stands before the command to run; may be empty
};

constexpr Known knownTerminals[] = {
    {"Terminal", "x-terminal-emulator", "-e"},
    {"Terminal", "xdg-terminal-exec", ""},
    {"Terminal", "gnome-terminal", "--"},
    {"Terminal", "konsole", "-e"},
    {"Terminal", "xterm", "-e"},
    {"Ghostty", "ghostty", "-e"},
};

bool letsIn(const QString &shell) {
    const QFileInfo file(shell);
    return file.isAbsolute() && file.isFile() && file.isExecutable() &&
           file.fileName() != u"nologin" && file.fileName() != u"false";
}

bool readsPosix(const QString &shell) {
    static const QStringList names{
        QStringLiteral("sh"),   QStringLiteral("bash"), QStringLiteral("dash"),
        QStringLiteral("zsh"),  QStringLiteral("ksh"),  QStringLiteral("ksh93"),
        QStringLiteral("mksh"), QStringLiteral("ash"),  QStringLiteral("yash")};
    return names.contains(QFileInfo(shell).fileName());
}

} // namespace

LinuxTerminals::Setting LinuxTerminals::Setting::ofThisProcess() {
    const QString path = qEnvironmentVariable("PATH");
    const struct passwd *user = ::getpwuid(::getuid());
    return {(path.isEmpty() ? QStringLiteral("/usr/local/bin:/usr/bin:/bin") : path)
                .split(u':', Qt::SkipEmptyParts),
            user != nullptr ? QFile::decodeName(user->pw_shell) : QString()};
}

LoginShells LinuxTerminals::shells() const {
    const QString plain = QStringLiteral("/bin/sh");
    const QString session = letsIn(m_setting.userShell) ? m_setting.userShell : plain;
    return {readsPosix(session) ? session : plain, session};
}

QStringList LinuxTerminals::names() const {
    QStringList names;
    for (const Known &known : knownTerminals) {
        names += QString::fromLatin1(known.name);
    }
    names.removeDuplicates();
    return names;
}

std::optional<TerminalCommand> LinuxTerminals::command(const QString &terminal,
                                                       const TerminalSession &session) const {
    for (const Known &known : knownTerminals) {
        const QString program =
            terminal == QLatin1StringView(known.name)
                ? QStandardPaths::findExecutable(QString::fromLatin1(known.program),
                                                 m_setting.programFolders)
                : QString();
        if (program.isEmpty()) {
            continue;
        }
        TerminalCommand command;
        command.program = program;
        if (*known.runs != '\0') {
            command.arguments += QString::fromLatin1(known.runs);
        }
        // The shell is named, for a temporary directory may forbid running what lies in it. And a
        // command of several words is what every terminal runs without a shell of its own.
        command.arguments += {shells().script, QStringLiteral("-l"), session.script};
        command.life = TerminalCommand::Life::LastsAsAWindow;
        return command;
    }
    return std::nullopt;
}

} // namespace vorle
