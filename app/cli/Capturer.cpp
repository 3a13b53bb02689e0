#include "app/cli/CommandForwarding.h"
#include "app/cli/Handlers.h"
#include "base/French.h"
#include "base/InstalledProgram.h"
#include "desktop/CaptureAddress.h"

#include <QCoreApplication>
#include <QProcess>

#include <csignal>

#include <cerrno>

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

/// Opens the app, and hands it the command once it answers.
Task<ExitStatus> openThenForward(Context &context, QString topicsFile) {
    constexpr std::chrono::milliseconds pause(100);
    constexpr int patience = 600; // of these pauses: it may have to wait for another command
    constexpr int afterItsEnd = 20;
    qint64 process = 0;
    if (!QProcess::startDetached(programToStart(), {}, QString(),
                                 &process)) {
        throw Failure(French::tr("vorle n’a pas pu s’ouvrir."));
    }
    int ended = 0;
    for (int tries = 0; tries < patience && ended < afterItsEnd; ++tries) {
        co_await sleepFor(pause, context.cancel);
        if (const auto status = co_await forwardCommand(context, topicsFile)) {
            co_return *status;
        }
        ended += hasEnded(process) ? 1 : 0;
    }
    throw Failure(French::tr("vorle n’a pas pu s’ouvrir."));
}

} // namespace

Task<ExitStatus> capturer(Context &context, std::function<QString()> topicsFile) {
    const LinkToCapture link = linkMeant(context.arguments);
    if (context.host == Host::App) {
        if (!context.openCapture || !context.openCapture(link)) {
            throw Failure(French::tr("La capture est déjà ouverte sur un autre lien."));
        }
        co_return ExitStatus::Done;
    }
    if (const auto status = co_await forwardCommand(context, topicsFile())) {
        co_return *status;
    }
    co_return co_await openThenForward(context, topicsFile());
}

} // namespace vorle::cli
