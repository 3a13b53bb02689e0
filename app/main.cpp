#include "agents/TemporaryFiles.h"
#include "app/cli/CommandLine.h"
#include "app/window/Gui.h"
#include "app/wiring/Startup.h"
#include "base/French.h"
#include "base/FrenchLocale.h"
#include "base/SystemErrorText.h"
#include "platform/Native.h"
#include "update/UpdateConfig.h"

#include <QCoreApplication>

#include <algorithm>
#include <array>
#include <clocale>
#include <csignal>
#include <cstdio>
#include <optional>
#include <string_view>
#include <system_error>

namespace {

/// Help must come whatever state the machine is in: it needs no folder and reads no file.
bool asksForHelp(int argc, char **argv) {
    constexpr std::array<std::string_view, 3> first{"-h", "aide", "--version"};
    for (int i = 1; i < argc; ++i) {
        const std::string_view word(argv[i]);
        if (word == "--help" ||
            (i == 1 && std::find(first.begin(), first.end(), word) != first.end())) {
            return true;
        }
    }
    return false;
}

/// How an option, alone on the line, opens the app; nothing for any other word.
std::optional<vorle::Entrance> entranceOf(std::string_view word) {
    return word == "--demo"     ? std::optional(vorle::Entrance::Demonstration)
           : word == "--hidden" ? std::optional(vorle::Entrance::Hidden)
                                : std::nullopt;
}

/// What everything else stands on. False, told on standard error, where the system refuses it.
bool prepare() {
    try {
        vorle::ignoreRelativeFolders();
        vorle::preparePrivateTemporaryDirectory();
        vorle::requireThreads();
        vorle::removeStaleFiles();
        return true;
    } catch (const std::system_error &error) {
        const QString text =
            vorle::French::tr("Je ne peux pas démarrer. %1\n").arg(vorle::systemRefusalText(error));
        std::fputs(text.toUtf8().constData(), stderr);
        return false;
    }
}

} // namespace

int main(int argc, char **argv) {
    // The program speaks UTF-8 whatever the machine's locale says.
    std::setlocale(LC_ALL, "C.UTF-8");
    QLocale::setDefault(vorle::frenchLocale());
    // A file that may not grow any more is told as a failing write, not by the program's end. A
    // handler goes when a child starts its program; being ignored would stay.
    std::signal(SIGXFSZ, [](int) {});
    QCoreApplication::setApplicationName(QStringLiteral("vorle"));
    QCoreApplication::setApplicationVersion(QStringLiteral(VORLE_VERSION));
    // Before anything makes a temporary file or starts a child.
    if (!asksForHelp(argc, argv) && !prepare()) {
        return 1;
    }
    const auto installedApps = vorle::native::installedApps();
    const auto container = vorle::native::sharedContainer();
    const auto signatures = vorle::native::signatureCheck();
    const auto updates = vorle::UpdateConfig::from(QStringLiteral(VORLE_UPDATE_FEED),
                                                   QByteArrayLiteral(VORLE_UPDATE_KEY));
    // Without a command the app opens; a command starts no graphics.
    const auto entrance = argc <= 1  ? std::optional(vorle::Entrance::Window)
                          : argc > 2 ? std::nullopt
                                     : entranceOf(argv[1]);
    if (entrance) {
        const auto terminals = vorle::native::terminals();
        const auto pasteboard = vorle::native::pasteboard();
        const auto links = vorle::native::linkOpener();
        const auto files = vorle::native::filePicker();
        const auto reveal = vorle::native::fileReveal();
        const auto drops = vorle::native::dropSignal();
        const auto browser = vorle::native::frontBrowser();
        const auto widgets = vorle::native::widgetTimelines();
        const auto dock = vorle::native::dockPresence();
        return vorle::runGui(argc, argv,
                             {*installedApps,
                              *terminals,
                              *pasteboard,
                              *links,
                              *files,
                              *reveal,
                              container.get(),
                              drops.get(),
                              browser.get(),
                              signatures.get(),
                              *widgets,
                              *dock,
                              vorle::native::motionSetting,
                              vorle::native::notifications,
                              vorle::native::loginItem,
                              vorle::native::globalHotKey,
                              vorle::native::keyWatch,
                              vorle::native::mailComposer,
                              vorle::native::programVersion(),
                              updates,
                              vorle::native::updateEngine},
                             *entrance);
    }

    const QCoreApplication app(argc, argv);
    return vorle::cli::runCommandLine(QCoreApplication::arguments().sliced(1), *installedApps,
                                      container.get(), signatures.get(), updates);
}
