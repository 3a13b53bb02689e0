#include "agents/TemporaryFiles.h"
#include "app/cli/CommandLine.h"
#include "platform/Native.h"

#include <QCoreApplication>
#include <QLocale>

#include <clocale>
#include <cstdio>
#include <system_error>

int main(int argc, char **argv) {
    // The program speaks UTF-8 whatever the machine's locale says.
    std::setlocale(LC_ALL, "C.UTF-8");
    QLocale::setDefault(QLocale(QLocale::French, QLocale::France));
    // Before anything makes a temporary file or starts a child.
    try {
        vorle::preparePrivateTemporaryDirectory();
    } catch (const std::system_error &error) {
        std::fprintf(stderr, "Aucun dossier temporaire sûr : %s\n", error.what());
        return 1;
    }

    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("vorle"));
    QCoreApplication::setApplicationVersion(QStringLiteral(VORLE_VERSION));
    vorle::sweepStrays();
    const auto installedApps = vorle::native::installedApps();
    return vorle::cli::runCommandLine(QCoreApplication::arguments().sliced(1), *installedApps);
}
