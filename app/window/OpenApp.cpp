#include "app/window/OpenApp.h"

#include "app/cli/Command.h"
#include "app/window/ShellParts.h"
#include "app/window/UnderWay.h"
#include "app/wiring/Application.h"
#include "base/French.h"
#include "desktop/CaptureAddress.h"
#include "platform/DockPresence.h"

#include <QApplication>
#include <QTimer>

namespace vorle {

OpenApp::OpenApp(Application &app, const GuiAdapters &adapters, Early early,
                 SingleInstance &instance, Entrance entrance, std::function<void()> left)
    : m_screens(ScreenEngine::reading())
    , m_store(app.store())
    , m_preferences(app.preferences())
    , m_widget(app.widget())
    , m_faces(Typefaces::load())
    , m_notifier({early.notifications, m_preferences, app.clock(), m_faces.display})
    , m_launcher({app.agent().locator(), m_preferences, adapters.terminals, adapters.pasteboard,
                  adapters.links})
    , m_globalHotKey(adapters.hotKey())
    , m_hotKey(m_preferences, *m_globalHotKey)
    , m_keys(adapters.keys())
    , m_mail(adapters.mail())
    , m_systemUpdates(adapters.updateEngine())
    , m_updates(m_systemUpdates ? *m_systemUpdates : app.updates())
    , m_updater({.engine = m_updates,
                 .clock = app.clock(),
                 .version = QCoreApplication::applicationVersion(),
                 .busy = [this, &app] { return underWay(app); }})
    , m_shell(partsOf(app, adapters, early.login))
    , m_notices({m_notifier, app.engine(), m_store, *m_shell.program()})
    , m_motion(adapters.motion())
    , m_main(std::move(m_screens), m_shell, m_faces, m_store.file())
    , m_links({.preferences = m_preferences,
               .store = m_store,
               .capture = app.capture(),
               .inbox = app.sharedPath(QStringLiteral("Inbox")),
               .projectNames = app.sharedPath(QStringLiteral("projects.json")),
               .signal = adapters.drops})
    , m_tray(*m_shell.run(), *m_shell.inbox())
    , m_entering(m_main, m_tray, early.login)
    , m_commands([this, &app](const cli::Command &command, cli::Context &context) {
        context.openCapture = [this](const cli::LinkToCapture &link) {
            return m_shell.quickCapture()->open(link);
        };
        if (!m_systemUpdates) {
            context.relaunch = [&app] { app.updates().relaunch(); };
            context.busy = [this, &app, &context] { return underWay(app, &context); };
        }
        return cli::runCommand(command, context, app);
    })
    , m_instance(instance)
    , m_timer(m_preferences, app.clock())
    , m_resume(app.engine(), m_timer, app.clock())
    , m_demo(QCoreApplication::applicationFilePath())
    , m_left(std::move(left)) {
    m_preferences.watch();
    connect(&m_instance, &SingleInstance::commandAsked, &m_commands, &CommandServer::serve);
    followTimers();
    followTray();
    followWindow();
    connect(&m_main.window(), &QWindow::visibleChanged, this,
            [&dock = adapters.dock](bool shown) { dock.show(shown); });
    followUpdates();
    // Once the window is there: what the first decision would otherwise wait for.
    connect(
        &m_main.window(), &QQuickWindow::frameSwapped, this, [this] { m_store.prepareSaves(); },
        static_cast<Qt::ConnectionType>(Qt::QueuedConnection | Qt::SingleShotConnection));
    m_main.observe(*m_motion);
    m_main.showIconsOf(adapters.installedApps);
    m_entering.enter(entrance);
}

Shell::Parts OpenApp::partsOf(Application &app, const GuiAdapters &adapters, LoginItem &login) {
    Shell::Parts parts =
        shellParts(app, {adapters.links, adapters.pasteboard, m_launcher, adapters.files,
                         adapters.reveal, m_notifier, login, m_hotKey, *m_keys, *m_mail, m_updater,
                         adapters.browser, adapters.version});
    parts.released = parts.store.releaseAllPending();
    for (const QString &name : adapters.terminals.names()) {
        if (adapters.terminals.command(name, {})) {
            parts.terminals += name;
        }
    }
    return parts;
}

void OpenApp::followTimers() {
    connect(&m_timer, &RunTimer::due, m_shell.run(), &RunModel::startDue);
    connect(&m_timer, &RunTimer::looked, &m_instance, &SingleInstance::listenWhereGone);
    connect(&m_timer, &RunTimer::looked, &m_shell, &Shell::refresh);
    connect(&m_timer, &RunTimer::looked, &m_links, &SharedLinks::look);
    connect(&m_links, &SharedLinks::told, &m_shell, &Shell::tellOfDrops);
    connect(&m_timer, &RunTimer::looked, &m_notifier, &Notifier::lookAtClock);
    connect(&m_resume, &ResumeTimer::due, &m_shell, &Shell::goOn);
    connect(qApp, &QGuiApplication::applicationStateChanged, &m_timer,
            [this](Qt::ApplicationState state) {
                if (state == Qt::ApplicationActive) {
                    // A Mac's settings come to the disk some seconds after a command set them.
                    m_preferences.reload();
                    m_timer.look();    // it may have slept
                    m_notifier.look(); // leave may have been given meanwhile
                    reopen();
                }
            });
}

void OpenApp::followTray() {
    connect(&m_tray, &Tray::openAsked, &m_main, &MainWindow::raise);
    connect(&m_tray, &Tray::statusAsked, &m_main, &MainWindow::toggleStatus);
    connect(&m_tray, &Tray::addAsked, &m_shell, &Shell::openQuickCapture);
    connect(&m_hotKey, &HotKey::pressed, &m_shell, &Shell::openQuickCapture);
    connect(&m_tray, &Tray::feedbackAsked, &m_main, &MainWindow::writeFeedback);
    connect(&m_tray, &Tray::settingsAsked, &m_main, &MainWindow::openSettings);
    connect(&m_tray, &Tray::quitAsked, this, [this] { quit(); });
}

void OpenApp::followWindow() {
    connect(&m_notifier, &Notifier::sectionAsked, &m_main, &MainWindow::showSection);
    if (MenuBar::isWanted()) {
        m_menuTarget = std::make_unique<MenuTarget>(m_shell, m_main);
        m_menus = std::make_unique<MenuBar>(*m_shell.commands(), *m_menuTarget);
    }
    connect(&m_main, &MainWindow::closed, this, [this] { windowClosed(); });
    connect(&m_main, &MainWindow::quitAsked, this, [this] { quit(); });
    connect(&m_main, &MainWindow::returnAsked, this, [this] { quit(); });
    connect(&m_main, &MainWindow::demoAsked, &m_demo, &DemoProcess::start);
    connect(&m_demo, &DemoProcess::started, &m_main.window(), &QWindow::hide);
    connect(&m_demo, &DemoProcess::ended, this, [this](const QString &problem) {
        m_main.raise();
        if (!problem.isEmpty()) {
            Q_EMIT m_shell.said(problem);
        }
    });
}

void OpenApp::followUpdates() {
    // Long enough to say that this version starts, opens and stays.
    constexpr std::chrono::seconds wellUnderWay(3);
    QTimer::singleShot(wellUnderWay, this, [this] {
        m_updates.confirmStart();
        m_updater.lookAtClock();
    });
    connect(&m_timer, &RunTimer::looked, &m_updater, &Updater::lookAtClock);
    connect(&m_updater, &Updater::told, &m_shell, &Shell::tellOfUpdate);
    // A terminal may turn the switches too.
    connect(&m_preferences, &Preferences::changed, &m_updater, [this](const QString &key) {
        if (Preferences::isKeyOf(key, &Settings::updateChecks) ||
            Preferences::isKeyOf(key, &Settings::updateInstalls)) {
            m_updater.followSettings(m_preferences.settings().updateChecks.has_value());
        }
    });
    if (!m_updater.notice().isEmpty()) {
        m_shell.tellOfUpdate(m_updater.notice()); // of an earlier start
    }
    connect(&m_tray, &Tray::updateAsked, &m_main, &MainWindow::lookForUpdate);
}

QString OpenApp::underWay(Application &app, const cli::Context *asking) const {
    return UnderWay{app, m_shell, m_main, m_commands, m_demo}.text(asking);
}

Task<> OpenApp::updatesStopped() {
    const OneShot stopped;
    m_updates.stop([stopped] { stopped.fire(); });
    co_await stopped;
    m_updates.confirmStart(); // who leaves in good order has started
    const OneShot finished;
    m_updates.finish([this, finished](std::optional<QString> successor) {
        m_successor = std::move(successor);
        finished.fire();
    });
    co_await finished;
}

void OpenApp::openAddress(const QString &address) {
    const auto link = CaptureAddress::from(address);
    if (!link) {
        raise();
        return;
    }
    m_shell.quickCapture()->open(
        {.url = link->url, .title = link->title, .giver = WebLink::Giver::Stranger});
}

void OpenApp::keep() {
    m_main.saveState();
    m_main.finishEditing();
    m_store.flush();
    m_preferences.flush();
    m_widget.flush(std::chrono::seconds(1));
}

void OpenApp::quit() {
    if (!m_quitting) {
        m_quitting = true;
        detach(leave(), QStringLiteral("quitting"));
    }
}

Task<> OpenApp::leave() {
    // Nothing brings a window back, and no notification is sent that nobody could answer.
    disconnect(&m_hotKey, nullptr, &m_shell, nullptr);
    disconnect(&m_notifier, nullptr, &m_main, nullptr);
    disconnect(&m_tray, nullptr, &m_main, nullptr);
    disconnect(&m_tray, nullptr, &m_shell, nullptr);
    m_notices.stop();
    m_updater.putOff();                              // who quits does not ask for a relaunch
    disconnect(&m_timer, nullptr, nullptr, nullptr); // no run begins any more
    disconnect(&m_resume, nullptr, nullptr, nullptr);
    m_main.saveState();
    m_main.finishEditing();
    m_main.window().hide();
    m_demo.stop();
    m_instance.close();
    co_await m_commands.closed();
    co_await m_links.stopped();
    co_await m_shell.stopped();
    m_store.flush();
    m_preferences.flush();
    co_await m_widget.ended();
    co_await updatesStopped();
    m_left();
}

/// A Mac starts no second process: it brings the first to the front, whose window may have been
/// closed.
void OpenApp::reopen() {
    if (QGuiApplication::platformName() == u"cocoa" && !m_quitting &&
        !m_main.window().isVisible() && !m_main.isStatusShown() &&
        !m_shell.quickCapture()->isShown()) {
        m_main.raise();
    }
}

void OpenApp::windowClosed() {
    m_main.finishEditing();
    if (!m_tray.show()) {
        // With nothing left to reach it by, a hidden app would only be in the way.
        m_shell.isAtWork() ? m_main.askToClose() : quit();
        return;
    }
    m_main.window().hide();
    if (!m_main.state().toldOfMenuBar) {
        const QString title = French::tr("vorle reste là");
        const QString text =
            French::tr("Je continue dans la barre de menus. Pour quitter\u00A0: clic droit sur mon "
                       "icône, puis Quitter.");
        if (m_tray.tell(title, text) || m_notifier.mention(title, text)) {
            m_main.state().toldOfMenuBar = true;
            m_main.saveState();
        }
    }
}

} // namespace vorle
