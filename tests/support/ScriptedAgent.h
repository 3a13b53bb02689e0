#pragma once

#include "agents/AgentLocator.h"
#include "tests/support/Files.h"

#include <QByteArray>
#include <QList>
#include <QMap>
#include <QStringList>
#include <QTemporaryDir>

namespace vorle::test {

/// Agents that do what a test says, as real executables in a fresh home, with a fresh temporary
/// directory for everything run meanwhile. Only one at a time.
class ScriptedAgent {
public:
    struct Call {
        QStringList arguments;
        QMap<QString, QString> environment;
        QString directory;
        QByteArray input; ///< where the script kept it with: cat > "$call/input"
    };

    ScriptedAgent();
    ~ScriptedAgent();

    QString home() const { return m_folder.filePath(QStringLiteral("home")); }
    QString temporary() const { return m_folder.filePath(QStringLiteral("tmp")); }
    /// Names only this home: whatever the machine has installed is not found.
    AgentEnvironment environment() const;

    /// Installs the agent; each call is noted, then runs `shell` (for /bin/sh), which finds its
    /// number in $n, a folder of its own in $call and the answer file's path in $answer.
    void install(AgentKind kind, const QByteArray &shell) const;
    void signIn(AgentKind kind) const;

    QList<Call> calls() const;
    /// What lies in the temporary directory.
    QStringList leftovers() const;

private:
    QTemporaryDir m_folder;
    QByteArray m_oldTemporary;
};

} // namespace vorle::test
