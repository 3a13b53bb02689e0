// What a shell proposes while a person types a command: asked of the shells themselves.

#include "tests/support/Program.h"

#include <QFile>
#include <QProcess>
#include <QStandardPaths>

#include <gmock/gmock.h>

namespace vorle {
namespace {

using test::Program;
using testing::HasSubstr;

class CompletionsTest : public testing::Test {
protected:
    /// The script for a shell, in a file of its own.
    QString script(const char *shell) {
        const Program::Outcome made =
            vorle.run({QStringLiteral("completion"), QString::fromLatin1(shell)});
        EXPECT_EQ(made.status, 0) << made.err;
        QFile file(vorle.path(shell));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(QByteArray::fromStdString(made.out));
        return file.fileName();
    }
    /// What the shell prints, and what it complains of.
    static std::string said(const QString &shell, const QStringList &arguments) {
        QProcess process;
        process.setProcessChannelMode(QProcess::MergedChannels);
        process.start(shell, arguments);
        EXPECT_TRUE(process.waitForFinished(20'000));
        EXPECT_EQ(process.exitCode(), 0);
        return process.readAll().trimmed().toStdString();
    }
    Program vorle;
};

TEST_F(CompletionsTest, bash_proposes_what_the_command_takes_at_that_place) {
    const QString file = script("bash");
    const struct {
        const char *typed; ///< the last word is the one that is being typed
        const char *proposed;
    } cases[] = {
        {"fou", "fouille"},
        {"--v", "--version"},
        {"fouille --", "--demo --json --laisser --suite"},
        {"bilan --periode ", "semaine mois annee"},
        {"sujets --statut ", ""}, // a word of one's own
        {"trier ", ""},           // an identity
        {"trier abc ga", "garder"},
        {"trier abc garder --avis ", "meh useful gem"},
        {"trier --avis gem abc pas", "pas-pour-moi"}, // an option’s value takes no place
        {"projet ", "ajouter retirer"},
        {"connecter c", "claude codex"},
        {"inconnue ", ""},
    };
    for (const auto &one : cases) {
        const QString asked =
            QStringLiteral(
                "source '%1'; compopt() { :; }; COMP_WORDS=(vorle %2); [[ '%2' == *' ' ]] && "
                "COMP_WORDS+=(''); COMP_CWORD=$((${#COMP_WORDS[@]} - 1)); _vorle; "
                "echo \"${COMPREPLY[*]}\"")
                .arg(file, QString::fromLatin1(one.typed));
        EXPECT_EQ(said(QStringLiteral("bash"), {QStringLiteral("-c"), asked}), one.proposed)
            << one.typed;
    }
}

TEST_F(CompletionsTest, the_other_shells_can_read_theirs) {
    EXPECT_THAT(vorle.run("completion fish").out,
                HasSubstr("-l periode -x -a 'semaine mois annee'"));
    EXPECT_THAT(vorle.run("completion zsh").out,
                HasSubstr("'--periode:valeur:(semaine mois annee)'"));
    for (const char *shell : {"fish", "zsh"}) {
        const QString program = QStandardPaths::findExecutable(QString::fromLatin1(shell));
        if (!program.isEmpty()) {
            EXPECT_EQ(said(program, {QStringLiteral("-n"), script(shell)}), "");
        }
    }
    EXPECT_EQ(vorle.run("completion tcsh").status, 2);
}

} // namespace
} // namespace vorle
