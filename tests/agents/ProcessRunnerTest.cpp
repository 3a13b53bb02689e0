#include "agents/ProcessRunner.h"
#include "tests/support/ScriptedAgent.h"
#include "tests/support/Wait.h"

#include <QCoreApplication>
#include <QDir>
#include <QProcess>
#include <QRandomGenerator>
#include <QTimer>

#include <gtest/gtest.h>

#include <csignal>
#include <system_error>

#include <sys/resource.h>

namespace vorle {
namespace {

using namespace std::chrono_literals;

class ProcessRunner : public testing::Test {
protected:
    ProcessRequest shell(const QString &script, std::chrono::milliseconds timeout = 60s) const {
        ProcessRequest request;
        request.executable = QStringLiteral("/bin/sh");
        request.arguments = {QStringLiteral("-c"), script};
        request.timeout = timeout;
        request.environment = QProcessEnvironment::systemEnvironment();
        request.environment.insert(QStringLiteral("HOME"), m_folder.home());
        request.workingDirectory = m_folder.temporary();
        return request;
    }

    void TearDown() override { EXPECT_TRUE(m_folder.leftovers().isEmpty()); }

    /// The numbers a script wrote into its home; none while the file is not whole.
    QList<qint64> pids() const {
        const QByteArray text = test::readFile(m_folder.home() + QStringLiteral("/pids"));
        QList<qint64> out;
        if (text.endsWith('\n')) {
            for (const QByteArray &word : text.simplified().split(' ')) {
                out += word.toLongLong();
            }
        }
        return out;
    }

    void expectGone() const {
        for (const qint64 pid : pids()) {
            EXPECT_NO_THROW(test::spinUntil([pid] { return !isAlive(pid); })) << pid;
        }
    }

    static bool isAlive(qint64 pid) {
        if (::kill(static_cast<pid_t>(pid), 0) != 0) {
            return false;
        }
        // Orphans are reaped by somebody else, in their own time.
        return !test::readFile(QStringLiteral("/proc/%1/stat").arg(pid)).contains(") Z ");
    }

    test::ScriptedAgent m_folder; // for its fresh directories
};

TEST_F(ProcessRunner, tells_how_the_child_ended_and_what_it_wrote) {
    using How = ProcessEnd::How;
    ProcessEnd end = test::waitFor(runProcess(shell(QStringLiteral("echo out; echo err >&2"))));
    EXPECT_TRUE(end.succeeded());
    EXPECT_EQ(end.output, "out\n");
    EXPECT_EQ(end.errorTail, QStringLiteral("err\n"));

    end = test::waitFor(runProcess(shell(QStringLiteral("exit 137"))));
    EXPECT_EQ(std::pair(end.how, end.status), std::pair(How::Exited, 137));
    end = test::waitFor(runProcess(shell(QStringLiteral("kill -USR1 $$"))));
    EXPECT_EQ(std::pair(end.how, end.status), std::pair(How::Signalled, SIGUSR1));
}

TEST_F(ProcessRunner, what_cannot_be_launched_is_the_systems_error) {
    ProcessRequest request = shell({});
    for (const auto &[path, error] : {std::pair(QStringLiteral("/no/such"), ENOENT),
                                      std::pair(QStringLiteral("/etc/passwd"), EACCES)}) {
        request.executable = path;
        try {
            test::waitFor(runProcess(request));
            ADD_FAILURE() << "launched " << path.toStdString();
        } catch (const std::system_error &thrown) {
            EXPECT_TRUE(thrown.code().value() == error || ::geteuid() == 0) << thrown.what();
        }
    }
}

TEST_F(ProcessRunner, gives_the_input_whole_and_does_not_mind_a_child_that_leaves_it) {
    const QByteArray input(3'000'000, 'x');
    const std::pair<QString, QByteArray> cases[] = {
        {QStringLiteral("wc -c | tr -d ' '"), "3000000\n"},
        {QStringLiteral("echo deaf"), "deaf\n"},
        {QStringLiteral("exec 0<&-; sleep 0.2; echo closed"), "closed\n"},
        {QStringLiteral("head -c 100000 | wc -c | tr -d ' '"), "100000\n"},
    };
    for (const auto &[script, output] : cases) {
        ProcessRequest request = shell(script);
        request.input = input;
        EXPECT_EQ(test::waitFor(runProcess(request)).output, output) << script.toStdString();
    }
    ProcessRequest waiting = shell(QStringLiteral("sleep 60"), 100ms);
    waiting.input = input;
    EXPECT_EQ(test::waitFor(runProcess(waiting)).status, SIGTERM);
    // Without input there is nothing to read, rather than our own standard input.
    EXPECT_EQ(test::waitFor(runProcess(shell(QStringLiteral("cat; echo end")))).output, "end\n");
}

TEST_F(ProcessRunner, the_loop_keeps_turning_while_the_child_works) {
    int turns = 0;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, [&] { ++turns; });
    timer.start(10ms);
    test::waitFor(runProcess(shell(QStringLiteral("sleep 0.3"))));
    EXPECT_GE(turns, 5);
}

TEST_F(ProcessRunner, ends_the_whole_group_at_the_time_out_even_when_it_will_not_listen) {
    ProcessEnd end = test::waitFor(
        runProcess(shell(QStringLiteral("sleep 60 & echo $! $$ > \"$HOME/pids\"; wait"), 300ms)));
    EXPECT_EQ(end.how, ProcessEnd::How::Signalled);
    EXPECT_EQ(pids().size(), 2);
    expectGone();

    end = test::waitFor(runProcess(shell(
        QStringLiteral("trap '' TERM; sleep 60 & echo $! $$ > \"$HOME/pids\"; wait"), 300ms)));
    EXPECT_EQ(std::pair(end.how, end.status), std::pair(ProcessEnd::How::Signalled, SIGKILL));
    expectGone();
}

/// What a child may start: each script notes two processes in $PIDS, of which it is the second.
/// The first would go on for minutes.
struct Tree {
    const char *what;
    const char *start;
};
constexpr Tree trees[] = {
    {"behind a launcher that waits", "sh -c 'echo $$ >> \"$PIDS\"; exec sleep 120' &"},
    {"that does not listen", "(trap '' TERM HUP; exec sleep 120) & echo $! >> \"$PIDS\";"},
#ifdef Q_OS_LINUX
    {"in a session of its own",
     "setsid sh -c 'trap \"\" TERM; echo $$ >> \"$PIDS\"; exec sleep 120' &"},
    {"whose parents are gone",
     "(setsid sh -c '(setsid sh -c \"echo \\$\\$ >> $PIDS; exec sleep 120\" &)' &);"},
#endif
};
/// Waits until the first is there, so that it is noted before whatever ends it.
QString scriptOf(const Tree &tree, const char *then) {
    return QString::fromLatin1(tree.start) +
           QStringLiteral(" while [ ! -s \"$PIDS\" ]; do sleep 0.01; done; "
                          "echo $$ >> \"$PIDS\"; ") +
           QString::fromLatin1(then);
}

TEST_F(ProcessRunner, ends_all_that_the_child_started_however_it_ends) {
    for (const Tree &tree : trees) {
        const auto run = [&](const char *then, CancelToken cancel = {}) {
            QFile::remove(m_folder.home() + QStringLiteral("/pids"));
            ProcessRequest request = shell(scriptOf(tree, then), 700ms);
            request.environment.insert(QStringLiteral("PIDS"),
                                       m_folder.home() + QStringLiteral("/pids"));
            const ProcessEnd end = test::waitFor(runProcess(request, std::move(cancel)));
            EXPECT_EQ(pids().size(), 2) << tree.what;
            return end;
        };
        EXPECT_EQ(run("echo done").output, "done\n") << tree.what;
        expectGone();
        EXPECT_EQ(run("exec sleep 120").how, ProcessEnd::How::Signalled) << tree.what;
        expectGone();
        CancelSource source;
        QTimer watch;
        QObject::connect(&watch, &QTimer::timeout, [&] {
            if (pids().size() == 2) {
                source.cancel();
            }
        });
        watch.start(5ms);
        EXPECT_THROW(run("exec sleep 120", source.token()), Cancelled) << tree.what;
        expectGone();
    }
}

TEST_F(ProcessRunner, a_killed_guard_takes_the_child_with_it) {
#ifndef Q_OS_LINUX
    GTEST_SKIP() << "no such service on this system";
#endif
    const ProcessEnd end = test::waitFor(runProcess(
        shell(QStringLiteral("echo $$ > \"$HOME/pids\"; kill -9 $PPID; sleep 120; sleep 120"))));
    EXPECT_EQ(std::pair(end.how, end.status), std::pair(ProcessEnd::How::Signalled, SIGKILL));
    expectGone();
}

TEST_F(ProcessRunner, a_stop_at_any_moment_leaves_neither_child_nor_file) {
    int stopped = 0;
    for (int i = 0; i < 40; ++i) {
        const std::chrono::milliseconds delay(QRandomGenerator::global()->bounded(40));
        CancelSource source;
        QTimer timer;
        timer.setSingleShot(true);
        QObject::connect(&timer, &QTimer::timeout, [&] { source.cancel(); });
        auto task = runProcess(
            shell(QStringLiteral("sleep 60 & echo $! $$ > \"$HOME/pids\"; sleep 0.03; kill $!")),
            source.token());
        if (i == 0) {
            source.cancel(); // between the fork and the first turn of the loop
        } else {
            timer.start(delay);
        }
        try {
            test::waitFor(std::move(task));
        } catch (const Cancelled &) {
            ++stopped;
        }
        EXPECT_TRUE(m_folder.leftovers().isEmpty()) << delay.count();
        expectGone();
        QFile::remove(m_folder.home() + QStringLiteral("/pids"));
    }
    EXPECT_GE(stopped, 1);
}

TEST_F(ProcessRunner, an_output_too_large_costs_no_memory_and_an_endless_one_is_ended) {
    const auto peak = [] {
        struct rusage usage = {};
        ::getrusage(RUSAGE_SELF, &usage);
        return usage.ru_maxrss; // KB on Linux, bytes on a Mac, where the check is only stricter
    };
    const auto before = peak();
    ProcessEnd end = test::waitFor(
        runProcess(shell(QStringLiteral("head -c 20000000 /dev/zero; head -c 9000000 /dev/zero "
                                        "| tr '\\0' e >&2; printf 'é!' >&2"))));
    EXPECT_TRUE(end.succeeded());
    EXPECT_TRUE(end.output.isEmpty());
    EXPECT_TRUE(end.errorTail.endsWith(QStringLiteral("eé!")));
    EXPECT_LT(end.errorTail.size(), 70'000);
    EXPECT_LT(peak() - before, 60'000);

    end = test::waitFor(runProcess(shell(QStringLiteral("exec head -c 900000000 /dev/zero"))));
    EXPECT_EQ(end.how, ProcessEnd::How::Flooded);
    EXPECT_LT(peak() - before, 60'000);

    end = test::waitFor(runProcess(shell(QStringLiteral("yes & echo $! > \"$HOME/pids\"; wait"))));
    EXPECT_EQ(end.how, ProcessEnd::How::Flooded);
    expectGone();

    // What is told besides is no answer: however much, it costs the answer nothing, nor the disk.
    end = test::waitFor(
        runProcess(shell(QStringLiteral("yes error | head -c 40000002 >&2; echo out; sleep 0.6; "
                                        "stat -L -c %s /proc/$$/fd/2; printf last >&2"))));
    EXPECT_TRUE(end.succeeded());
    EXPECT_TRUE(end.output.startsWith("out\n"));
#ifdef Q_OS_LINUX
    EXPECT_LE(end.output.mid(4).trimmed().toLongLong(), 8'000'000);
#endif
    EXPECT_TRUE(end.errorTail.endsWith(QStringLiteral("error\nlast")))
        << qPrintable(end.errorTail.right(40));
}

TEST_F(ProcessRunner, the_end_of_errors_never_starts_inside_a_character) {
    const ProcessEnd end = test::waitFor(runProcess(
        shell(QStringLiteral("printf x >&2; head -c 70000 /dev/zero | sed 's/\\x00/é/g' >&2"))));
    EXPECT_FALSE(end.errorTail.contains(QChar(QChar::ReplacementCharacter)));
    EXPECT_TRUE(end.errorTail.startsWith(u'é'));
}

/// Run by the next test in a process of its own, which is then killed.
TEST_F(ProcessRunner, DISABLED_runs_for_ever) {
    test::waitFor(runProcess(shell(qEnvironmentVariable("SCRIPT"))), 120s);
}

TEST_F(ProcessRunner, all_of_it_ends_with_a_killed_app) {
    for (const Tree &tree : trees) {
        QFile::remove(m_folder.home() + QStringLiteral("/pids"));
        QProcess app;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("PIDS"), m_folder.home() + QStringLiteral("/pids"));
        environment.insert(QStringLiteral("SCRIPT"), scriptOf(tree, "exec sleep 120"));
        app.setProcessEnvironment(environment);
        app.start(QCoreApplication::applicationFilePath(),
                  {QStringLiteral("--gtest_also_run_disabled_tests"),
                   QStringLiteral("--gtest_filter=*DISABLED_runs_for_ever")});
        test::spinUntil([&] { return pids().size() == 2; });
        EXPECT_TRUE(isAlive(pids().first())) << tree.what;
        app.kill();
        app.waitForFinished();
        expectGone();
        QDir(m_folder.temporary()).removeRecursively(); // what the killed app could not remove
        QDir().mkpath(m_folder.temporary());
    }
}

} // namespace
} // namespace vorle
