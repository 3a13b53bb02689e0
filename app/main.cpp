#include "agents/TemporaryFiles.h"
#include "app/cli/CommandLine.h"
#include "app/window/Gui.h"
#include "base/French.h"
#include "platform/Native.h"

#include <QCoreApplication>
#include <QLocale>

#include <clocale>
#include <csignal>
#include <cstdio>
#include <string_view>
#include <system_error>

int main(int argc, char **argv) {
    // The program speaks UTF-8 whatever the machine's locale says.
    std::setlocale(LC_ALL, "C.UTF-8");
    QLocale::setDefault(QLocale(QLocale::French, QLocale::France));
    // A file that may not grow any more is told as a failing write, not by the program's end. A
    // handler goes when a child starts its program; being ignored would stay.
    std::signal(SIGXFSZ, [](int) {});
    // Before anything makes a temporary file or starts a child.
    try {
        vorle::preparePrivateTemporaryDirectory();
    } catch (const std::system_error &error) {
        const QString text = vorle::French::tr("Aucun dossier temporaire sûr : %1\n")
                                 .arg(QString::fromLocal8Bit(error.what()));
        std::fputs(text.toUtf8().constData(), stderr);
        return 1;
    }

    QCoreApplication::setApplicationName(QStringLiteral("vorle"));
    QCoreApplication::setApplicationVersion(QStringLiteral(VORLE_VERSION));
    vorle::sweepStrays();
    const auto installedApps = vorle::native::installedApps();
    // Without a command the app opens; a command starts no graphics.
    const bool demo = argc == 2 && std::string_view(argv[1]) == "--demo";
    if (argc <= 1 || demo) {
        const auto terminals = vorle::native::terminals();
        const auto pasteboard = vorle::native::pasteboard();
        const auto links = vorle::native::linkOpener();
        return vorle::runGui(argc, argv, {*installedApps, *terminals, *pasteboard, *links}, demo);
    }

    const QCoreApplication app(argc, argv);
    return vorle::cli::runCommandLine(QCoreApplication::arguments().sliced(1), *installedApps);
}
