#include "app/cli/CommandForwarding.h"
#include "app/cli/Handlers.h"
#include "base/French.h"
#include "base/HttpClient.h"
#include "storage/FileLock.h"
#include "storage/StoreLock.h"
#include "update/AppcastEngine.h"
#include "update/ReleaseFetch.h"
#include "update/UpdateError.h"
#include "update/Updater.h"

#include <QCoreApplication>
#include <QScopeGuard>

#include <system_error>

namespace vorle::cli {

namespace {

struct UpdateShown {
    QString version;
    std::optional<QString> found;
    bool ready = false; ///< it lies here, and takes the program's place when that ends
    bool installed = false;
    std::optional<QString> waits = {}; ///< what keeps the open app from coming back as it at once

    static constexpr auto jsonFields() {
        return std::tuple(json::field("version", &UpdateShown::version),
                          json::field("found", &UpdateShown::found),
                          json::field("ready", &UpdateShown::ready),
                          json::field("installed", &UpdateShown::installed),
                          json::field("waits", &UpdateShown::waits));
    }
};

[[noreturn]] void fail(const QString &title, const QString &text, const QString &reason) {
    noteUpdate(QStringLiteral("failed: ") + reason);
    throw Failure(title + QStringLiteral(". ") + text);
}

Task<std::optional<Release>> find(Context &context, HttpClient &http, UpdateDoor door) {
    QString reason;
    try {
        co_return co_await findRelease(http, door.config, QCoreApplication::applicationVersion(),
                                       context.cancel);
    } catch (const UpdateError &error) {
        reason = error.text();
    }
    fail(updatetext::checkFailedTitle(), updatetext::checkFailedText(), reason);
}

Task<> fetch(Context &context, HttpClient &http, UpdateDoor door, Installation installation,
             Release release) {
    constexpr int whole = 100;
    const auto got = std::make_shared<qint64>(0);
    FetchProgress progress;
    progress.received = [&context, got, bytes = release.bytes](qint64 more) {
        *got += more;
        context.console.progress(French::tr("Téléchargement…"),
                                 static_cast<int>(*got * whole / bytes), whole, {});
    };
    QString reason;
    QString title = updatetext::installFailedTitle();
    QString text = updatetext::installFailedText();
    const auto ends = qScopeGuard([&context] { context.console.endProgress(); });
    try {
        co_await fetchRelease(http, door.config, installation, release, progress, context.cancel);
        co_return;
    } catch (const UpdateHeldElsewhere &error) {
        title = updatetext::heldElsewhereTitle();
        text = updatetext::heldElsewhereText();
        reason = error.text();
    } catch (const UpdateError &error) {
        reason = error.text();
    } catch (const std::system_error &error) {
        reason = QString::fromLocal8Bit(error.what());
    }
    fail(title, text, reason);
}

/// Puts what is ready in the place of the version in use, unless an app still runs on that one.
bool activate(const UpdateDoor &door, const Installation &installation) {
    QString reason;
    try {
        FileLock lock(installation.lockFile());
        if (!door.appLock->tryLock() || !lock.tryLock()) {
            return false;
        }
        if (!installation.isInDoubt()) {
            installation.confirm(); // it came this far, and is what to go back to
        }
        return installation.activate() || installation.placed();
    } catch (const std::system_error &error) {
        reason = QString::fromLocal8Bit(error.what());
    }
    if (const auto ready = installation.ready()) {
        installation.noteUnplaced(*ready); // for the app to tell, too
    }
    fail(updatetext::installFailedTitle(), updatetext::installFailedText(), reason);
}

void tell(Context &context, const UpdateShown &shown, bool isAppOpen) {
    const bool installs = context.arguments.flags.contains(QStringLiteral("installer"));
    if (context.arguments.json()) {
        context.console.print(json::encode(shown, json::Style::Pretty));
    } else if (shown.installed) {
        context.console.print(French::tr("vorle %1 est installée.").arg(*shown.found));
    } else if (shown.waits) {
        context.console.print(updatetext::readyTitle() + u' ' + updatetext::heldUp(*shown.waits));
    } else if (shown.ready && !installs && !isAppOpen) {
        context.console.print(
            French::tr("vorle %1 est prête. Pour l’installer : vorle mise-a-jour --installer")
                .arg(*shown.found));
    } else if (shown.ready) {
        context.console.print(updatetext::readyTitle() + u' ' +
                              (installs && context.relaunch ? French::tr("vorle se relance.")
                                                            : updatetext::readyForTheEnd()));
    } else if (shown.found) {
        context.console.print(
            French::tr("vorle %1 est là. Pour l’installer : vorle mise-a-jour --installer")
                .arg(*shown.found));
    } else {
        context.console.print(updatetext::upToDate(shown.version));
    }
}

} // namespace

Task<ExitStatus> miseAJour(Context &context, UpdateDoor door) {
#if defined(Q_OS_MACOS)
    constexpr bool isOfApp = true; // which alone has the engine that does it there
#else
    constexpr bool isOfApp = false;
#endif
    if (isOfApp) {
        throw Failure(French::tr("Sur un Mac, c’est l’app ouverte qui se met à jour\u00A0: choisis "
                                 "«\u202FRechercher une mise à jour\u202F» dans son menu."));
    }
    const bool installs = context.arguments.flags.contains(QStringLiteral("installer"));
    if (installs && context.host == Host::OwnProcess) {
        if (const auto status = co_await forwardCommand(context, door.topicsFile())) {
            co_return *status;
        }
    }
    if (const auto obstacle = updateObstacle(door.config, door.program)) {
        throw Failure(*obstacle);
    }
    if (co_await isPackaged(door.program, context.cancel)) {
        throw Failure(packagedText());
    }
    const Installation installation = *Installation::of(door.program);
    HttpClient http(door.config.loopback);
    UpdateShown shown{.version = QCoreApplication::applicationVersion(),
                      .found = installation.coming()};
    if (!shown.found) {
        const auto release = co_await find(context, http, door);
        if (release) {
            shown.found = release->version;
        }
        if (release && installs) {
            co_await fetch(context, http, door, installation, *release);
        }
    }
    shown.ready = installation.coming().has_value();
    if (shown.ready && installs && context.host == Host::OwnProcess) {
        shown.installed = activate(door, installation);
    }
    const bool isAppOpen = context.host != Host::OwnProcess || door.appLock->isHeldElsewhere();
    const bool relaunches = shown.ready && installs && context.relaunch;
    if (const QString busy = relaunches && context.busy ? context.busy() : QString();
        !busy.isEmpty()) {
        shown.waits = busy;
    }
    tell(context, shown, isAppOpen);
    if (relaunches && !shown.waits) {
        context.relaunch();
    }
    co_return ExitStatus::Done;
}

} // namespace vorle::cli
