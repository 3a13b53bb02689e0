#include "app/cli/Handlers.h"
#include "base/French.h"
#include "base/InstalledProgram.h"
#include "desktop/FileManagerDoors.h"

#include <QCoreApplication>
#include <QProcess>
#include <QStandardPaths>

namespace vorle::cli {

#if defined(Q_OS_LINUX)
namespace {

/// Runs a program of the desktop's that keeps its lists, where it is there. What it says is its
/// own: the files are what counts.
void runIfThere(const QString &name, const QStringList &arguments) {
    constexpr int patience = 10'000;
    const QString program = QStandardPaths::findExecutable(name);
    if (program.isEmpty()) {
        return;
    }
    QProcess process;
    process.setStandardInputFile(QProcess::nullDevice());
    process.start(program, arguments);
    if (!process.waitForFinished(patience)) {
        process.kill();
        process.waitForFinished();
    }
}

} // namespace
#endif

Task<ExitStatus> integrer(Context &context, const Resources &resources) {
#if defined(Q_OS_LINUX)
    const QString data = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    const QString program = programToStart();
    const FileManagerDoors files(resources, data, program);
    const bool remove = context.arguments.flags.contains(QStringLiteral("retirer"));
    remove ? files.remove() : files.install();
    runIfThere(QStringLiteral("update-desktop-database"), {data + QStringLiteral("/applications")});
    if (!remove) {
        runIfThere(QStringLiteral("xdg-mime"),
                   {QStringLiteral("default"), QStringLiteral("vorle-capture.desktop"),
                    QStringLiteral("x-scheme-handler/vorle")});
    }
    QList<QString> paths;
    for (const FileManagerDoors::File &file : files.files()) {
        paths += file.path;
    }
    if (context.arguments.json()) {
        context.console.print(json::encode(paths, json::Style::Pretty));
    } else {
        context.console.print(context.console.bold(
            remove ? French::tr("Retiré") : French::tr("« Ajouter à vorle » est en place")));
        for (const QString &path : std::as_const(paths)) {
            context.console.print(QStringLiteral("  ") + context.console.plain(path));
        }
    }
    co_return ExitStatus::Done;
#else
    static_cast<void>(resources);
    static_cast<void>(context);
    throw Failure(French::tr("Cette commande est pour Linux\u00A0: sur un Mac, « Partager » et les "
                             "adresses vorle: viennent avec l’app."));
    co_return ExitStatus::Failed;
#endif
}

} // namespace vorle::cli
