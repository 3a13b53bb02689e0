#include "agents/setup/RunningNpm.h"

#include "agents/ProcessRunner.h"
#include "agents/setup/SetupError.h"

#include <QDir>
#include <QFileInfo>

#include <chrono>
#include <system_error>
#include <utility>

namespace vorle {

namespace {

QString pathName() { return QStringLiteral("PATH"); }

bool isProgram(const QString &path) {
    const QFileInfo file(path);
    return file.isFile() && file.isExecutable();
}

/// Where programs are looked for, for a person at a terminal and for agents.
QStringList allFolders(const AgentLocator &agents) {
    QStringList folders =
        agents.environment().variables.value(pathName()).split(u':', Qt::SkipEmptyParts);
    folders += agents.folders();
    folders += agents.environment().nodeFolder();
    folders.removeIf([](const QString &folder) { return !QDir::isAbsolutePath(folder); });
    folders.removeDuplicates();
    return folders;
}

/// Those of them that hold a program of that name.
QStringList holding(QStringList folders, const QString &name) {
    folders.removeIf([&name](const QString &folder) { return !isProgram(folder + u'/' + name); });
    return folders;
}

Task<bool> runs(RunningNpm npm, QString folder, CancelToken cancel) {
    constexpr std::chrono::seconds patience(30);
    ProcessRequest request;
    request.executable = npm.program;
    request.arguments = {QStringLiteral("--version")};
    request.timeout = patience;
    request.environment = npm.variables;
    request.workingDirectory = std::move(folder);
    try {
        co_return (co_await runProcess(std::move(request), std::move(cancel))).succeeded();
    } catch (const std::system_error &) {
        co_return false; // it is no program of this machine's
    }
}

/// The ways to run one npm: by what its PATH has first, then by every other Node.
QList<RunningNpm> waysOf(const AgentLocator &agents, const QString &program,
                         const QStringList &nodeFolders) {
    QList<RunningNpm> ways;
    const QProcessEnvironment usual = agents.environment().childVariables(program);
    const QStringList path = usual.value(pathName()).split(u':', Qt::SkipEmptyParts);
    QStringList nodes;
    for (qsizetype i = -1; i < nodeFolders.size(); ++i) {
        const QStringList first = i < 0 ? QStringList() : QStringList(nodeFolders[i]);
        const QStringList folders = first + path + nodeFolders;
        const QString node = holding(folders, QStringLiteral("node")).value(0);
        if (!nodes.contains(node)) {
            nodes += node;
            ways += {program, usual};
            ways.last().variables.insert(pathName(), folders.join(u':'));
        }
    }
    return ways;
}

} // namespace

QStringList npmPrograms(const AgentLocator &agents) {
    QStringList programs = holding(allFolders(agents), QStringLiteral("npm"));
    for (QString &folder : programs) {
        folder += QStringLiteral("/npm");
    }
    return programs;
}

Task<RunningNpm> runningNpm(const AgentLocator &agents, QString folder, CancelToken cancel) {
    const QStringList programs = npmPrograms(agents);
    if (programs.isEmpty()) {
        throw SetupError::noNpm();
    }
    const QStringList nodeFolders = holding(allFolders(agents), QStringLiteral("node"));
    for (const QString &program : programs) {
        const QList<RunningNpm> ways = waysOf(agents, program, nodeFolders);
        for (const RunningNpm &way : ways) {
            if (co_await runs(way, folder, cancel)) {
                co_return way;
            }
        }
    }
    throw SetupError::npmDoesNotRun();
}

} // namespace vorle
