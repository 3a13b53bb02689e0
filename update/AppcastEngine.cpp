#include "update/AppcastEngine.h"

#include "base/French.h"
#include "search/discovery/Version.h"
#include "storage/FileLock.h"
#include "update/UpdateError.h"

#include <QFileInfo>
#include <QPointer>

#include <system_error>
#include <utility>

namespace vorle {

QString packagedText() {
    return French::tr("C’est ton système qui met vorle à jour, avec ses autres logiciels.");
}

std::optional<QString> updateObstacle(const UpdateConfig &config, const QString &program) {
    switch (Installation::keeperOf(program)) {
    case UpdateKeeper::Packages:
        return packagedText();
    case UpdateKeeper::Another:
        return French::tr(
            "Je n’ai pas le droit de modifier les fichiers de cette vorle\u00A0: c’est "
            "à la personne qui l’a installée de la mettre à jour.");
    case UpdateKeeper::Nobody:
        return French::tr("Cette vorle n’a pas été installée pour se mettre à jour.");
    case UpdateKeeper::Itself:
        break;
    }
    if (config.feed.isEmpty()) {
        return French::tr("Cette vorle ne sait pas où chercher ses mises à jour.");
    }
    if (config.publicKey.isEmpty()) {
        return French::tr("Cette vorle n’a pas de clé pour vérifier ses mises à jour : elle n’en "
                          "installe aucune.");
    }
    return std::nullopt;
}

namespace {

/// Has the version in use say that it works; false where that is to be tried again: another process
/// holds the links, or the disk refused.
bool confirmed(const Installation &installation) {
    installation.noteAnswer();
    try {
        FileLock lock(installation.lockFile());
        if (!lock.tryLock()) {
            return false;
        }
        installation.confirm();
        return true;
    } catch (const std::system_error &error) {
        noteUpdate(QString::fromLocal8Bit(error.what()));
        return false;
    }
}

/// Has what is ready take its place; false where nothing is, or it cannot.
bool takesPlace(const Installation &installation) {
    const auto ready = installation.ready();
    try {
        FileLock lock(installation.lockFile());
        // Who holds it is about to make another version ready, for the next end.
        if (ready && lock.tryLock() && installation.activate()) {
            noteUpdate(QStringLiteral("the new version is in place"));
            return true;
        }
    } catch (const std::system_error &error) {
        noteUpdate(QString::fromLocal8Bit(error.what()));
        if (ready) {
            installation.noteUnplaced(*ready); // for the next start to tell
        }
    }
    return false;
}

/// Takes away the marks that were told, and what a process left that died over a download.
Task<> tidy(Installation installation) {
    co_await onPool([installation] {
        FileLock lock(installation.lockFile());
        if (lock.tryLock()) {
            installation.clearStaging();
        }
        installation.forgetRefused();
        installation.forgetUnplaced();
        return true;
    });
}

} // namespace

struct AppcastEngine::Answer {
    OneShot given;
    UpdateDriver::Choice choice = UpdateDriver::Choice::Dismiss;
};

AppcastEngine::AppcastEngine(Parts parts, QObject *parent)
    : QObject(parent)
    , m_parts(std::move(parts))
    , m_installation(Installation::of(m_parts.program)) {}

AppcastEngine::~AppcastEngine() = default;

void AppcastEngine::start(UpdateDriver &driver) {
    m_driver = &driver;
    if (!m_installation || obstacle()) {
        return;
    }
    tellOfLastTime();
}

/// What the end of the last process came to.
void AppcastEngine::tellOfLastTime() {
    const auto refused = m_installation->refused();
    const auto unplaced = m_installation->unplaced();
    // One that is older was put aside long ago: what runs came after it.
    if (refused && isNewer(*refused, m_parts.version)) {
        // A check that is asked for offers it again.
        m_parts.preferences.change(&Settings::skippedUpdate, refused);
        m_driver->showTakenBack(*refused);
    }
    const auto ready = m_installation->coming();
    if (ready && unplaced == ready) {
        m_driver->showTakenBack(*ready); // the next end tries again
    } else if (ready) {
        tellReady(); // of a process that ended before it could install it
    }
    if (refused || unplaced || QFileInfo(m_installation->stagingFolder()).exists()) {
        m_work.add(logged(tidy(*m_installation), QStringLiteral("updates")));
    }
}

std::optional<QString> AppcastEngine::obstacle() const {
    return m_isPackaged ? packagedText() : updateObstacle(m_parts.config, m_parts.program);
}

void AppcastEngine::check() { begin(Wish::Person); }

void AppcastEngine::lookAtClock() {
    if (m_isToConfirm) {
        confirmStart();
    }
    constexpr qint64 hour = 3600;
    const Settings &settings = m_parts.preferences.settings();
    const QDateTime now = m_parts.clock.now();
    const auto isWithin = [&now](const std::optional<QDateTime> &moment, qint64 seconds) {
        return moment && *moment <= now && *moment > now.addSecs(-seconds);
    };
    const bool isDue = !isWithin(settings.lastUpdateCheck, 24 * hour) && !isWithin(m_asked, hour);
    // What is ready was told, and is not told again each time.
    if (checksByItself() && isDue && !m_underWay && m_driver != nullptr && m_installation &&
        !obstacle() && (!m_installation->coming() || m_installation->coming() != m_toldReady)) {
        begin(Wish::Nobody);
    }
}

bool AppcastEngine::checksByItself() const {
    const Settings &settings = m_parts.preferences.settings();
    return settings.updateInstalls || settings.updateChecks.value_or(false);
}

void AppcastEngine::setChecksByItself(bool on) {
    m_parts.preferences.change(&Settings::updateChecks, std::optional(on));
    lookAtClock();
}

bool AppcastEngine::installsByItself() const {
    return m_parts.preferences.settings().updateInstalls;
}

void AppcastEngine::setInstallsByItself(bool on) {
    m_parts.preferences.change(&Settings::updateInstalls, on);
}

void AppcastEngine::begin(Wish wish) {
    if (m_stopped || m_driver == nullptr || !m_installation || obstacle()) {
        return;
    }
    if (m_underWay && m_isLooking && wish == Wish::Person && m_wish == Wish::Nobody) {
        m_wish = Wish::Person; // who is told what comes of it from here on
        tellChecking();
        return;
    }
    if (m_underWay) {
        // One that was stopped is still ending.
        m_again = m_again || (wish == Wish::Person && m_cancel.token().isCancelled());
        m_driver->showInFocus();
        return;
    }
    if (m_installation->coming()) {
        tellReady();
        return;
    }
    m_underWay = true;
    m_isLooking = true;
    m_wish = wish;
    m_cancel = CancelSource();
    m_work.add(logged(run(m_cancel.token()), QStringLiteral("updates")));
}

Task<> AppcastEngine::run(CancelToken cancel) {
    QString fault;
    try {
        co_await update(cancel);
    } catch (const Cancelled &) {
        noteUpdate(QStringLiteral("cancelled"));
    } catch (const UpdateHeldElsewhere &) {
        m_driver->showHeldElsewhere();
    } catch (const UpdateError &error) {
        fault = error.text();
    } catch (const std::exception &error) {
        fault = QString::fromLocal8Bit(error.what());
    }
    if (!fault.isEmpty() && cancel.isCancelled()) {
        noteUpdate(QStringLiteral("cancelled, after ") + fault);
    } else if (!fault.isEmpty()) {
        fail(fault);
    }
    m_underWay = false;
    m_isLooking = false;
    m_driver->dismissed();
    if (std::exchange(m_again, false)) {
        begin(Wish::Person);
    }
}

void AppcastEngine::fail(const QString &text) {
    m_driver->showError(text, [] {});
}

void AppcastEngine::tellChecking() {
    m_driver->showUserInitiatedCheck(
        [self = QPointer(this)] { // which it may outlive, as all that the driver keeps
            if (self) {
                self->m_cancel.cancel();
            }
        });
}

void AppcastEngine::askForPermission() {
    m_driver->showPermissionRequest([self = QPointer(this)](bool daily) {
        if (self) {
            self->setChecksByItself(daily);
        }
    });
}

/// Asks the feed. A check that gets no answer is none, and is made up for an hour later.
Task<std::optional<Release>> AppcastEngine::look(CancelToken cancel) {
    if (!m_http) {
        m_http = std::make_unique<HttpClient>(m_parts.config.loopback);
    }
    m_asked = m_parts.clock.now();
    auto release = co_await findRelease(*m_http, m_parts.config, m_parts.version, cancel);
    m_parts.preferences.change(&Settings::lastUpdateCheck, std::exchange(m_asked, std::nullopt));
    m_isLooking = false;
    co_return release;
}

Task<> AppcastEngine::update(CancelToken cancel) {
    Preferences &preferences = m_parts.preferences;
    if (m_wish == Wish::Person) {
        tellChecking();
    }
    if (co_await m_parts.packaged(m_parts.program, cancel)) {
        noteUpdate(QStringLiteral("the system's packages hold this program"));
        m_isPackaged = true;
        co_return;
    }
    if (m_wish == Wish::Person && !preferences.settings().updateChecks) {
        askForPermission();
    }
    const auto release = co_await look(cancel);
    if (!release || (m_wish == Wish::Nobody && isPassedOver(release->version))) {
        m_driver->showNotFound(release ? release->version + QStringLiteral(" is passed over")
                                       : QStringLiteral("this is the newest"),
                               [] {});
        co_return;
    }
    auto choice = UpdateDriver::Choice::Install;
    if (m_wish == Wish::Person || !installsByItself()) {
        choice = co_await choiceFor(*release, cancel);
    }
    if (choice == UpdateDriver::Choice::Skip) {
        preferences.change(&Settings::skippedUpdate, release->version);
    } else if (choice == UpdateDriver::Choice::Install) {
        co_await fetch(*release, cancel);
    }
}

bool AppcastEngine::isPassedOver(const QString &version) const {
    return m_parts.preferences.settings().skippedUpdate == version;
}

Task<UpdateDriver::Choice> AppcastEngine::choiceFor(Release release, CancelToken cancel) {
    const auto answer = std::make_shared<Answer>();
    const auto registration = cancel.onCancel([answer] { answer->given.fire(); });
    m_driver->showFound({release.version, release.notes, false},
                        [answer](UpdateDriver::Choice choice) {
                            answer->choice = choice;
                            answer->given.fire();
                        });
    co_await answer->given;
    cancel.throwIfCancelled();
    co_return answer->choice;
}

Task<> AppcastEngine::fetch(Release release, CancelToken cancel) {
    const QPointer<AppcastEngine> self(this);
    const auto told = [self](auto call) {
        return [self, call](auto... values) {
            if (self && self->m_underWay) {
                (self->m_driver->*call)(values...);
            }
        };
    };
    m_driver->showDownloadInitiated([self] {
        if (self) {
            self->m_cancel.cancel();
        }
    });
    m_driver->showExpectedBytes(release.bytes); // a server need not announce it
    co_await fetchRelease(
        *m_http, m_parts.config, *m_installation, release,
        {told(&UpdateDriver::showExpectedBytes), told(&UpdateDriver::showReceivedBytes),
         told(&UpdateDriver::showExtractionStarted), told(&UpdateDriver::showExtractionProgress)},
        cancel);
    m_parts.preferences.change(&Settings::skippedUpdate, std::nullopt);
    tellReady();
}

void AppcastEngine::tellReady() {
    m_toldReady = m_installation->coming();
    m_driver->showReady([self = QPointer(this)](UpdateDriver::Choice choice) {
        if (self && choice == UpdateDriver::Choice::Install) {
            self->m_driver->showInstalling(false, [self] {
                if (self) {
                    self->relaunch();
                }
            });
            self->relaunch();
        }
    });
}

void AppcastEngine::relaunch() {
    m_relaunch = true;
    m_parts.quit();
}

void AppcastEngine::stop(std::function<void()> ended) {
    m_stopped = true;
    m_cancel.cancel();
    detach(tellEnd(&m_work, std::move(ended)), QStringLiteral("updates"));
}

Task<> AppcastEngine::tellEnd(TaskGroup *work, std::function<void()> ended) {
    co_await work->join();
    ended();
}

void AppcastEngine::confirmStart() {
    if (m_installation && !m_isConfirming) {
        m_isConfirming = true;
        m_work.add(logged(confirm(), QStringLiteral("updates")));
    }
}

Task<> AppcastEngine::confirm() {
    m_isToConfirm = !co_await onPool([here = *m_installation] { return confirmed(here); });
    m_isConfirming = false;
}

void AppcastEngine::finish(std::function<void(std::optional<QString> successor)> done) {
    detach(leave(std::move(done)), QStringLiteral("updates"));
}

Task<> AppcastEngine::leave(std::function<void(std::optional<QString>)> done) {
    co_await m_work.join(); // this version may be saying that it works
    std::optional<QString> successor;
    if (m_installation) {
        co_await onPool([here = *m_installation] { return takesPlace(here); });
        successor = m_relaunch ? std::optional(m_installation->launcher()) : std::nullopt;
    }
    done(successor);
}

} // namespace vorle
