#pragma once

#include "agents/AgentLocator.h"
#include "tests/support/Files.h"
#include "tests/support/Variables.h"

#include <QByteArray>
#include <QList>
#include <QMap>
#include <QStringList>
#include <QTemporaryDir>

namespace vorle::test {

/// Agents that do what a test says, as real executables in a home, and that note what they were
/// asked.
class ScriptedAgent {
public:
    struct Call {
        QStringList arguments;
        QMap<QString, QString> environment;
        QString directory;
        QByteArray input; ///< where the script kept it with: cat > "$call/input"
        qint64 process = 0;
        QString step; ///< of one that answers by a table: "candidates", "judge", "dig" or "brief"
        /// What Claude Code is asked.
        QString prompt() const { return arguments.value(arguments.indexOf(u"-p") + 1); }
    };
    /// The script that answers by the table; more may be done before it.
    static const QByteArray byTable;

    /// In a fresh home, with a fresh temporary directory for everything run meanwhile. Only one at
    /// a time.
    ScriptedAgent();
    /// In that home.
    explicit ScriptedAgent(const QString &home);

    QString home() const { return m_home; }
    QString temporary() const { return m_folder.filePath(QStringLiteral("tmp")); }
    /// Names only this home: whatever the machine has installed is not found.
    AgentEnvironment environment() const;

    /// Installs the agent; each call is noted, then runs `shell` (for /bin/sh), which finds its
    /// number in $n, a folder of its own in $call and the answer file's path in $answer.
    void install(AgentKind kind, const QByteArray &shell) const;
    void signIn(AgentKind kind = AgentKind::Claude) const;
    void signOut(AgentKind kind = AgentKind::Claude) const;
    /// Has Claude Code answer whole runs by this table: each kind of question with an answer, a
    /// delay or a refusal (see stand-in-agent.py). Installs it where it is not; a process that is
    /// answering keeps the table it read.
    void answerBy(const QByteArray &table) const;

    QList<Call> calls() const;
    /// The calls that took this step, by the table.
    qsizetype calls(QStringView step) const;
    /// What Claude Code was asked, call after call.
    QString prompts() const;
    /// The agents that still run.
    qsizetype living() const;
    /// What lies in the temporary directory.
    QStringList leftovers() const;

private:
    QTemporaryDir m_folder;
    QString m_home;
    Variables m_variables;
};

} // namespace vorle::test
