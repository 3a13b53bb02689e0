#include "app/cli/CommandForwarding.h"
#include "app/cli/Handlers.h"
#include "base/French.h"
#include "base/InstalledProgram.h"
#include "desktop/CaptureAddress.h"

#include <QCoreApplication>
#include <QProcess>

#include <csignal>

#include <cerrno>
#include <optional>
#include <utility>

namespace vorle::cli {

namespace {

/// What the word asks for: an address of ours that some program handed over, or a link.
LinkToCapture linkMeant(const Arguments &arguments) {
    const QString word = arguments.positional.value(0);
    const QString title = arguments.options.value(QStringLiteral("titre"));
    if (word.isEmpty()) {
        return {.url = {}, .title = title};
    }
    if (CaptureAddress::isOurs(word)) {
        const auto link = CaptureAddress::from(word);
        if (!link) {
            throw Failure(French::tr("Cette adresse vorle: n’apporte aucun lien."));
        }
        return {.url = link->url, .title = link->title, .giver = WebLink::Giver::Stranger};
    }
    const auto link = WebLink::typed(word);
    if (!link) {
        throw Failure(French::tr("Ce n’est pas l’adresse d’une page web."));
    }
    return {.url = link->text(), .title = title};
}

bool hasEnded(qint64 process) {
    return ::kill(static_cast<pid_t>(process), 0) != 0 && errno == ESRCH;
}

/// Opens the app, and hands it the command once it answers. An app that waits for its topics is
/// waited for, as any command is; the one that is started has it show its window, which says so.
Task<ExitStatus> openThenForward(Context &context, QString topicsFile) {
    constexpr std::chrono::milliseconds pause(100);
    constexpr int patience = 600; // of these pauses, without a sign of life
    constexpr int afterItsEnd = 20;
    qint64 process = 0;
    if (!QProcess::startDetached(programToStart(), {}, QString(), &process)) {
        throw Failure(French::tr("vorle n’a pas pu s’ouvrir."));
    }
    bool told = false;
    int ended = 0;
    for (int tries = 0; tries < patience && ended < afterItsEnd; ++tries) {
        co_await sleepFor(pause, context.cancel);
        const Forwarded forwarded = co_await askApp(context, topicsFile);
        if (forwarded.status) {
            co_return *forwarded.status;
        }
        if (forwarded.waits) {
            if (!std::exchange(told, true)) {
                context.console.say(French::tr("vorle attend la fin d’une autre commande\u00A0: la "
                                               "capture s’ouvre dès qu’elle a fini."));
            }
            tries = 0;
            ended = 0;
            continue;
        }
        ended += hasEnded(process) ? 1 : 0;
    }
    throw Failure(French::tr("vorle n’a pas pu s’ouvrir."));
}

/// In the app. What cannot be proposed is said in the capture, too: nobody may see the terminal.
/// @throws Failure
void proposeHere(const Context &context) {
    LinkToCapture link;
    std::optional<Failure> none;
    try {
        link = linkMeant(context.arguments);
    } catch (const Failure &failure) {
        link.problem = failure.text();
        none = failure;
    }
    const bool opened = context.openCapture && context.openCapture(link);
    if (none) {
        throw *none;
    }
    if (!opened) {
        throw Failure(French::tr("La capture est déjà ouverte sur un autre lien."));
    }
}

} // namespace

Task<ExitStatus> capturer(Context &context, std::function<QString()> topicsFile) {
    if (context.host == Host::App) {
        proposeHere(context);
        co_return ExitStatus::Done;
    }
    if (Console::isHeard()) {
        linkMeant(context.arguments); // a terminal is told of what is none; elsewhere the capture
    }
    if (const auto status = co_await forwardCommand(context, topicsFile())) {
        co_return *status;
    }
    co_return co_await openThenForward(context, topicsFile());
}

} // namespace vorle::cli
