#include "desktop/LaunchScript.h"

#include "core/Topic.h"
#include "desktop/LaunchPrompt.h"
#include "platform/macos/MacTerminals.h"
#include "tests/support/HostileNames.h"
#include "tests/support/ScriptedAgent.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace vorle {
namespace {

QStringList shellsHere() {
    QStringList shells;
    for (const char *shell : {"zsh", "bash", "dash", "sh"}) {
        if (const QString path = QStandardPaths::findExecutable(QString::fromLatin1(shell));
            !path.isEmpty()) {
            shells += path;
        }
    }
    return shells;
}

/// A world in which a session can run and everything that ran is known.
class Stage {
public:
    Stage() {
        QDir().mkpath(path(QStringLiteral("home")));
        program(QStringLiteral("tools/pwned"), "touch \"$STAGE/pwned\"");
        program(QStringLiteral("tools/clear"), ":");
        // What a login shell reads sets the search path; /etc/profile has forgotten ours.
        for (const char *profile : {"home/.profile", "home/.zprofile"}) {
            test::writeFile(path(QString::fromLatin1(profile)),
                            "PATH=\"$STAGE/tools:/usr/bin:/bin\"\n");
        }
        program(QStringLiteral("session"),
                "printf '%s\\0' \"$*\" > \"$STAGE/session-ran\"; pwd -P >> \"$STAGE/session-ran\"");
    }

    QString path(const QString &name) const { return m_folder.filePath(name); }

    void program(const QString &name, const QByteArray &shell) const {
        test::writeProgram(path(name), shell);
    }

    /// Takes what a program left under this name.
    QByteArray take(const QString &name) const {
        const QByteArray text = test::readFile(path(name));
        QFile::remove(path(name));
        return text;
    }

    void run(const QString &program, const QStringList &arguments) const {
        QProcess process;
        QProcessEnvironment environment;
        environment.insert(QStringLiteral("HOME"), path(QStringLiteral("home")));
        environment.insert(QStringLiteral("STAGE"), m_folder.path());
        process.setProcessEnvironment(environment);
        process.setWorkingDirectory(path(QStringLiteral("home")));
        process.setStandardInputFile(QProcess::nullDevice());
        process.start(program, arguments);
        process.waitForFinished();
    }

    LoginShells shells(const QString &shell) const {
        return {shell, path(QStringLiteral("session"))};
    }

private:
    QTemporaryDir m_folder;
};

/// The real path, as pwd -P gives it.
QByteArray realPath(const QString &folder) {
    return QFile::encodeName(QFileInfo(folder).canonicalFilePath());
}

/// One project of that name, with everything of the session lying in its folder.
struct Case {
    Case(const Stage &stage, const QString &name) {
        plan.folder = stage.path(QStringLiteral("projects/")) + name;
        plan.agent = plan.folder + QStringLiteral("/claude");
        plan.promptFile = plan.folder + QStringLiteral("/prompt.txt");
        plan.scriptFile = plan.folder + QStringLiteral("/script.command");
        test::writeProgram(plan.agent,
                           "printf '%s\\0' \"$#\" \"$1\" \"$PATH\" > \"$STAGE/agent-ran\"\n"
                           "pwd -P >> \"$STAGE/agent-ran\"\nkill -INT $$");
        Topic topic;
        topic.title = name;
        topic.project = name;
        prompt = launchPrompt(topic, LaunchTarget::ProjectFolder).toUtf8();
    }

    LaunchTexts prepare(const LoginShells &shells) const {
        const LaunchTexts texts = launchTexts(plan, shells);
        test::writeFile(plan.promptFile, prompt);
        test::writeFile(plan.scriptFile, texts.script.toUtf8());
        return texts;
    }

    void expectRan(const Stage &stage) const {
        const QList<QByteArray> ran = stage.take(QStringLiteral("agent-ran")).split('\0');
        ASSERT_EQ(ran.size(), 4);
        EXPECT_EQ(ran[0], "1");
        EXPECT_EQ(ran[1], prompt);
        EXPECT_TRUE(ran[2].startsWith(QFile::encodeName(plan.folder) + ':'));
        EXPECT_TRUE(ran[2].endsWith("/tools:/usr/bin:/bin"));
        EXPECT_EQ(ran[3], realPath(plan.folder) + '\n');
        const QByteArray session = stage.take(QStringLiteral("session-ran"));
        EXPECT_EQ(session, QByteArray("-l\0", 3) + realPath(plan.folder) + '\n');
        EXPECT_FALSE(QFile::exists(plan.promptFile));
        EXPECT_FALSE(QFile::exists(plan.scriptFile));
        EXPECT_FALSE(QFile::exists(stage.path(QStringLiteral("pwned")))) << "it was executed";
    }

    LaunchPlan plan;
    QByteArray prompt;
};

TEST(LaunchScript, hands_the_agent_the_prompt_in_the_folder_whatever_both_are_called) {
    const Stage stage;
    stage.run(QStringLiteral("/bin/sh"),
              {QStringLiteral("-l"), QStringLiteral("-c"), QStringLiteral("pwned")});
    ASSERT_TRUE(QFile::remove(stage.path(QStringLiteral("pwned")))) << "it could not be executed";
    const QStringList shells = shellsHere(); // each has its turn
    const QStringList names = test::hostileNames();
    EXPECT_GE(names.size(), 200);
    for (qsizetype i = 0; i < names.size(); ++i) {
        const QString &shell = shells[i % shells.size()];
        SCOPED_TRACE(shell.toStdString() + " in " + names[i].toStdString());
        const Case project(stage, names[i]);
        project.prepare(stage.shells(shell));
        stage.run(shell, {QStringLiteral("-l"), project.plan.scriptFile});
        project.expectRan(stage);
    }
}

TEST(LaunchScript, survives_the_shell_that_ghostty_hands_its_command_to) {
    const Stage stage;
    const QStringList shells = shellsHere();
    const QStringList names = test::strainingNames();
    for (qsizetype i = 0; i < names.size(); ++i) {
        SCOPED_TRACE(names[i].toStdString());
        const Case project(stage, names[i]);
        const LaunchTexts texts = project.prepare(stage.shells(shells[i % shells.size()]));
        const auto command = MacTerminals().command(QStringLiteral("Ghostty"),
                                                    {project.plan.scriptFile, texts.line});
        QString handed = command->arguments.last();
        const QString setting = QStringLiteral("--initial-command=/bin/zsh ");
        ASSERT_TRUE(handed.startsWith(setting));
        handed.replace(0, setting.size(), shells[i % shells.size()] + u' ');
        stage.run(shells[(i + 1) % shells.size()], {QStringLiteral("-c"), handed});
        project.expectRan(stage);
    }
}

TEST(LaunchScript, runs_no_agent_elsewhere_or_without_its_prompt_and_leaves_a_shell) {
    const Stage stage;
    const Case project(stage, QStringLiteral("here"));
    LaunchPlan gone = project.plan;
    gone.folder += QStringLiteral("/gone");
    LaunchPlan unread = project.plan;
    unread.promptFile += u'?';
    for (const LaunchPlan &plan : {gone, unread}) {
        project.prepare(stage.shells(QStringLiteral("/bin/sh")));
        const LaunchTexts texts = launchTexts(plan, stage.shells(QStringLiteral("/bin/sh")));
        stage.run(QStringLiteral("/bin/sh"),
                  {QStringLiteral("-l"), QStringLiteral("-c"), texts.line});
        EXPECT_TRUE(stage.take(QStringLiteral("agent-ran")).isEmpty());
        EXPECT_FALSE(stage.take(QStringLiteral("session-ran")).isEmpty());
    }
}

TEST(LaunchScript, is_a_login_shells_on_a_mac) {
    const LaunchTexts texts = launchTexts(
        {QStringLiteral("/Users/me/.local/bin/claude"), QStringLiteral("/Users/me/My app"),
         QStringLiteral("/tmp/p.txt"), QStringLiteral("/tmp/s.command")},
        MacTerminals().shells());
    const QString commands = QStringLiteral(
        "trap : INT; vorle_prompt=$(command cat /tmp/p.txt) && rm -f -- /tmp/p.txt && "
        "cd -- '/Users/me/My app' && PATH=/Users/me/.local/bin:$PATH "
        "/Users/me/.local/bin/claude \"$vorle_prompt\"");
    EXPECT_EQ(texts.script, QStringLiteral("#!/bin/zsh -l\nrm -f -- \"$0\"\nclear\n") + commands +
                                QStringLiteral("\nexec /bin/zsh -l\n"));
    EXPECT_EQ(texts.line, QStringLiteral("rm -f -- /tmp/s.command; ") + commands +
                              QStringLiteral("; exec /bin/zsh -l"));
}

} // namespace
} // namespace vorle
