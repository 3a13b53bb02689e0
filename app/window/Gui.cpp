#include "app/window/Gui.h"

#include "app/Application.h"
#include "app/Interrupts.h"
#include "app/RunTimer.h"
#include "app/Startup.h"
#include "app/demo/Demonstration.h"
#include "app/window/CommandDoor.h"
#include "app/window/MainWindow.h"
#include "app/window/Shell.h"
#include "app/window/SingleInstance.h"
#include "app/window/Tray.h"
#include "base/French.h"
#include "base/Log.h"
#include "desktop/ClaudeLauncher.h"
#include "search/RunPlan.h"

#include <QApplication>

#include <cstdio>
#include <exception>

namespace vorle {

namespace {

void complain(const QString &text) { std::fprintf(stderr, "%s\n", text.toUtf8().constData()); }

/// Without a screen Qt would end the program in its own words.
bool hasScreen() {
#if defined(Q_OS_LINUX)
    const auto isSet = [](const char *name) { return !qgetenv(name).isEmpty(); };
    return isSet("DISPLAY") || isSet("WAYLAND_DISPLAY") || isSet("QT_QPA_PLATFORM");
#else
    return true;
#endif
}

/// The app once it owns its topics: the windows and what they stand on.
class Gui final : public QObject {
public:
    Gui(Application &app, const GuiAdapters &adapters, qsizetype released)
        : m_app(app)
        , m_launcher({app.agent().locator(), app.preferences(), adapters.terminals,
                      adapters.pasteboard, adapters.links})
        , m_shell({app, adapters.links, adapters.pasteboard, m_launcher, released})
        , m_main(m_shell, Typefaces::load(), app.store().file())
        , m_tray(*m_shell.run(), *m_shell.inbox())
        , m_door(app)
        , m_instance(app.store().file())
        , m_timer(app.preferences(), app.clock()) {
        QGuiApplication::setQuitOnLastWindowClosed(false);
        QGuiApplication::setWindowIcon(Tray::picture(0));
        m_instance.listen();
        connect(&m_instance, &SingleInstance::raiseAsked, this, [this] { m_main.raise(); });
        connect(&m_instance, &SingleInstance::commandAsked, &m_door, &CommandDoor::serve);
        connect(&m_timer, &RunTimer::due, this, [this] {
            // Nobody asked: with nothing to search there is nothing to tell either.
            if (hasTerritory(m_app.preferences())) {
                m_shell.run()->start();
            }
        });
        connect(&m_timer, &RunTimer::looked, &m_shell, &Shell::refresh);
        connect(qApp, &QGuiApplication::applicationStateChanged, &m_timer,
                [this](Qt::ApplicationState state) {
                    if (state == Qt::ApplicationActive) {
                        m_timer.look(); // it may have slept
                        reopen();
                    }
                });
        connect(&m_tray, &Tray::openAsked, &m_main, &MainWindow::raise);
        connect(&m_tray, &Tray::statusAsked, &m_main, &MainWindow::toggleStatus);
        connect(&m_tray, &Tray::addAsked, &m_main, &MainWindow::add);
        connect(&m_tray, &Tray::settingsAsked, &m_main, &MainWindow::openSettings);
        connect(&m_tray, &Tray::quitAsked, this, [this] { quit(); });
        connect(&m_main, &MainWindow::closed, this, [this] { windowClosed(); });
        connect(&m_main, &MainWindow::quitAsked, this, [this] { quit(); });
        // Once the window is there: what the first decision would otherwise wait for.
        connect(
            &m_main.window(), &QQuickWindow::frameSwapped, this,
            [this] { m_app.store().prepareSaves(); },
            static_cast<Qt::ConnectionType>(Qt::QueuedConnection | Qt::SingleShotConnection));
        m_main.raise();
    }

    /// Stops what is under way, keeps what it brought, and leaves.
    void quit() {
        if (!m_quitting) {
            m_quitting = true;
            detach(leave(), QStringLiteral("quitting"));
        }
    }

private:
    Task<> leave() {
        m_main.keepPlace();
        m_main.finishEditing();
        m_main.window().hide();
        m_instance.close();
        co_await m_door.closed();
        co_await m_shell.stopped();
        m_app.store().flush();
        // From the event loop, which may not have started yet.
        QMetaObject::invokeMethod(qApp, [] { QCoreApplication::exit(0); }, Qt::QueuedConnection);
    }

    /// A Mac starts no second process: it brings the first to the front, whose window may have
    /// been closed.
    void reopen() {
        if (QGuiApplication::platformName() == u"cocoa" && !m_quitting &&
            !m_main.window().isVisible() && !m_main.isStatusShown()) {
            m_main.raise();
        }
    }

    void windowClosed() {
        m_main.finishEditing();
        if (!m_tray.show()) {
            quit(); // with nothing left to reach it by, a hidden app would only be in the way
            return;
        }
        m_main.window().hide();
        if (!m_main.state().toldOfMenuBar) {
            m_main.state().toldOfMenuBar = true;
            m_main.keepPlace();
            m_tray.tell(tr("vorle reste là"),
                        tr("Je continue dans la barre de menus. Pour me quitter : menu, Quitter."));
        }
    }

    Application &m_app;
    ClaudeLauncher m_launcher;
    Shell m_shell;
    MainWindow m_main;
    Tray m_tray;
    CommandDoor m_door;
    SingleInstance m_instance;
    RunTimer m_timer;
    bool m_quitting = false;
};

} // namespace

int runGui(int &argc, char **argv, const GuiAdapters &adapters, bool demo) {
    if (!hasScreen()) {
        complain(French::tr("Il n’y a pas d’écran ici. Les commandes marchent sans : vorle aide"));
        return 1;
    }
    QApplication qt(argc, argv);
    QGuiApplication::setApplicationDisplayName(QStringLiteral("vorle"));
    QGuiApplication::setDesktopFileName(QStringLiteral("vorle"));
    try {
        const std::unique_ptr<Demonstration> demonstration = demo ? enterDemonstration() : nullptr;
        Application app(setupFor(demonstration.get(), adapters.installedApps));
        if (demonstration) {
            demonstration->furnish(app.preferences());
        }
        if (!app.lock().tryLock()) {
            if (SingleInstance::raiseRunning(app.topicsFile())) {
                return 0;
            }
            complain(French::tr("Une commande vorle travaille sur tes sujets. Ouvre-moi dès "
                                "qu’elle a fini."));
            return 1;
        }
        Gui gui(app, adapters, app.store().releaseAllPending());
        const Interrupts interrupts;
        const auto onInterrupt = interrupts.token().onCancel([&gui] { gui.quit(); });
        return QApplication::exec();
    } catch (const std::exception &error) {
        complain(QString::fromUtf8(error.what()));
        return 1;
    }
}

} // namespace vorle
