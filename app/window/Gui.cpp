#include "app/window/Gui.h"

#include "app/cli/Command.h"
#include "app/demo/Demonstration.h"
#include "app/window/CommandServer.h"
#include "app/window/DemoProcess.h"
#include "app/window/MainWindow.h"
#include "app/window/Opening.h"
#include "app/window/QuitHandler.h"
#include "app/window/ShellParts.h"
#include "app/window/SingleInstance.h"
#include "app/window/Tray.h"
#include "app/window/WaitingWindow.h"
#include "app/wiring/Application.h"
#include "app/wiring/Interrupts.h"
#include "app/wiring/ResumeTimer.h"
#include "app/wiring/RunTimer.h"
#include "app/wiring/Startup.h"
#include "base/French.h"
#include "base/Log.h"
#include "base/SystemErrorText.h"
#include "desktop/ClaudeLauncher.h"
#include "platform/MotionSetting.h"

#include <QApplication>
#include <QMessageBox>

#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <exception>
#include <functional>
#include <memory>
#include <system_error>

namespace vorle {

namespace {

void complain(const QString &text) { std::fprintf(stderr, "%s\n", text.toUtf8().constData()); }

/// Whether who started the program sees what it complains of: a terminal, or another program.
bool isHeard() {
    struct stat state{};
    return ::isatty(STDERR_FILENO) == 1 ||
           (::fstat(STDERR_FILENO, &state) == 0 && S_ISFIFO(state.st_mode)) ||
           QGuiApplication::platformName() == u"offscreen";
}

/// Without a screen Qt would end the program in its own words.
bool hasScreen() {
#if defined(Q_OS_LINUX)
    const auto isSet = [](const char *name) { return !qgetenv(name).isEmpty(); };
    return isSet("DISPLAY") || isSet("WAYLAND_DISPLAY") || isSet("QT_QPA_PLATFORM");
#else
    return true;
#endif
}

/// The app once it owns its topics: makes the windows, and hands each of them what it works with.
class Gui final : public QObject {
public:
    /// `left` is called once `quit()` has done its work.
    Gui(Application &app, const GuiAdapters &adapters, SingleInstance &instance,
        std::function<void()> left)
        : m_store(app.store())
        , m_preferences(app.preferences())
        , m_launcher({app.agent().locator(), m_preferences, adapters.terminals, adapters.pasteboard,
                      adapters.links})
        , m_shell(partsOf(app, adapters, m_launcher))
        , m_motion(adapters.motion())
        , m_main(m_shell, Typefaces::load(), m_store.file())
        , m_tray(*m_shell.run(), *m_shell.inbox())
        , m_commands([&app](const cli::Command &command, cli::Context &context) {
            return cli::runCommand(command, context, app);
        })
        , m_instance(instance)
        , m_timer(m_preferences, app.clock())
        , m_resume(app.engine(), m_timer, app.clock())
        , m_demo(QCoreApplication::applicationFilePath())
        , m_left(std::move(left)) {
        m_preferences.watch();
        connect(&m_instance, &SingleInstance::commandAsked, &m_commands, &CommandServer::serve);
        connect(&m_timer, &RunTimer::due, m_shell.run(), &RunModel::startDue);
        connect(&m_timer, &RunTimer::looked, &m_shell, &Shell::refresh);
        connect(&m_resume, &ResumeTimer::due, &m_shell, &Shell::goOn);
        connect(qApp, &QGuiApplication::applicationStateChanged, &m_timer,
                [this](Qt::ApplicationState state) {
                    if (state == Qt::ApplicationActive) {
                        // A Mac's settings come to the disk some seconds after a command set them.
                        m_preferences.reload();
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
        connect(&m_main, &MainWindow::returnAsked, this, [this] { quit(); });
        connect(&m_main, &MainWindow::demoAsked, &m_demo, &DemoProcess::start);
        connect(&m_demo, &DemoProcess::started, &m_main.window(), &QWindow::hide);
        connect(&m_demo, &DemoProcess::ended, this, [this](const QString &problem) {
            m_main.raise();
            if (!problem.isEmpty()) {
                Q_EMIT m_shell.said(problem);
            }
        });
        // Once the window is there: what the first decision would otherwise wait for.
        connect(
            &m_main.window(), &QQuickWindow::frameSwapped, this, [this] { m_store.prepareSaves(); },
            static_cast<Qt::ConnectionType>(Qt::QueuedConnection | Qt::SingleShotConnection));
        m_main.observe(*m_motion);
        m_main.raise();
    }

    void raise() { m_main.raise(); }

    /// Puts on disk what is not there yet, and goes on.
    void keep() {
        m_main.saveState();
        m_main.finishEditing();
        m_store.flush();
        m_preferences.flush();
    }

    /// Stops what is under way, keeps what it brought, and leaves.
    void quit() {
        if (!m_quitting) {
            m_quitting = true;
            detach(leave(), QStringLiteral("quitting"));
        }
    }

private:
    static Shell::Parts partsOf(Application &app, const GuiAdapters &adapters,
                                ClaudeLauncher &launcher) {
        Shell::Parts parts = shellParts(
            app, {adapters.links, adapters.pasteboard, launcher, adapters.files, adapters.reveal});
        parts.released = parts.store.releaseAllPending();
        for (const QString &name : adapters.terminals.names()) {
            if (adapters.terminals.command(name, {})) {
                parts.terminals += name;
            }
        }
        return parts;
    }

    Task<> leave() {
        m_main.saveState();
        m_main.finishEditing();
        m_main.window().hide();
        m_demo.stop();
        m_instance.close();
        co_await m_commands.closed();
        co_await m_shell.stopped();
        m_store.flush();
        m_preferences.flush();
        m_left();
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
            // With nothing left to reach it by, a hidden app would only be in the way.
            m_shell.run()->running() ? m_main.askToClose() : quit();
            return;
        }
        m_main.window().hide();
        if (!m_main.state().toldOfMenuBar) {
            m_main.state().toldOfMenuBar = true;
            m_main.saveState();
            m_tray.tell(
                French::tr("vorle reste là"),
                French::tr(
                    "Je continue dans la barre de menus. Pour quitter\u00A0: clic droit sur mon "
                    "icône, puis Quitter."));
        }
    }

    TopicStore &m_store;
    Preferences &m_preferences;
    ClaudeLauncher m_launcher;
    Shell m_shell;
    std::unique_ptr<MotionSetting> m_motion;
    MainWindow m_main;
    Tray m_tray;
    CommandServer m_commands;
    SingleInstance &m_instance;
    RunTimer m_timer;
    ResumeTimer m_resume;
    DemoProcess m_demo;
    std::function<void()> m_left;
    bool m_quitting = false;
};

/// The program from its start to its end: waits until it may be the app, opens, leaves.
class Program final : public QObject {
public:
    Program(Application &app, const GuiAdapters &adapters)
        : m_app(app), m_adapters(adapters), m_instance(app.topicsFile()) {
        QGuiApplication::setQuitOnLastWindowClosed(false);
        QGuiApplication::setWindowIcon(Tray::picture(0));
        connect(&m_instance, &SingleInstance::raiseAsked, this, [this] { raise(); });
        connect(&m_quitHandler, &QuitHandler::quitAsked, this, [this] { quit(); });
        connect(&m_quitHandler, &QuitHandler::keepAsked, this, [this] {
            if (m_gui) {
                m_gui->keep();
            }
        });
        detach(open(), QStringLiteral("opening"));
    }

    void quit() {
        if (m_gui) {
            m_gui->quit();
        } else if (m_refusal) {
            m_refusal->reject();
        } else {
            m_giveUp.cancel();
        }
    }

private:
    Task<> open() {
        QString problem;
        try {
            Opening opening(m_app.appLock(), m_app.lock(), m_instance, m_app.topicsFile());
            connect(&opening, &Opening::waiting, this, &Program::wait);
            if (co_await opening.begin(m_giveUp.token()) == Opening::Outcome::Raised) {
                m_quitHandler.left();
                co_return;
            }
            if (m_waiting) {
                m_app.preferences().reload();
            }
            m_gui = std::make_unique<Gui>(m_app, m_adapters, m_instance,
                                          [this] { m_quitHandler.left(); });
            m_waiting.reset();
            co_return;
        } catch (const Cancelled &) {
            m_quitHandler.left();
            co_return;
        } catch (const std::system_error &error) {
            problem = systemRefusalText(error);
        } catch (const std::exception &error) {
            problem = QString::fromUtf8(error.what());
        }
        refuse(problem);
    }

    /// Leaves, once the user has seen why.
    void refuse(const QString &problem) {
        complain(problem);
        m_waiting.reset();
        // Nobody is to be told that a window comes, nor to wait behind a box that only says why.
        m_instance.close();
        try {
            m_app.lock().release();
            m_app.appLock().release();
        } catch (const std::system_error &) {
            logLine(
                QStringLiteral("there is no place for the topics, and so no lock to give back"));
        }
        if (isHeard()) {
            m_quitHandler.left(1);
            return;
        }
        m_refusal = std::make_unique<QMessageBox>(QMessageBox::Critical, QStringLiteral("vorle"),
                                                  problem, QMessageBox::Close);
        connect(m_refusal.get(), &QMessageBox::finished, this, [this] { m_quitHandler.left(1); });
        m_refusal->show();
    }

    void wait(Opening::Holder holder) {
        const QString sentence = Opening::text(holder);
        complain(sentence);
        if (m_waiting) {
            m_waiting->setSentence(sentence);
            return;
        }
        m_waiting =
            std::make_unique<WaitingWindow>(m_app.preferences(), Typefaces::load(), sentence);
        connect(m_waiting.get(), &WaitingWindow::givenUp, this, [this] { quit(); });
    }

    void raise() {
        if (m_gui) {
            m_gui->raise();
        } else if (m_waiting) {
            m_waiting->raise();
        }
    }

    Application &m_app;
    const GuiAdapters &m_adapters;
    QuitHandler m_quitHandler;
    SingleInstance m_instance;
    CancelSource m_giveUp;
    std::unique_ptr<WaitingWindow> m_waiting;
    std::unique_ptr<QMessageBox> m_refusal;
    std::unique_ptr<Gui> m_gui;
};

} // namespace

int runGui(int &argc, char **argv, const GuiAdapters &adapters, bool demo) {
    if (!hasScreen()) {
        complain(
            French::tr("Il n’y a pas d’écran ici. Les commandes marchent sans\u00A0: vorle aide"));
        return 1;
    }
    QApplication qt(argc, argv);
    QGuiApplication::setApplicationDisplayName(QStringLiteral("vorle"));
    QGuiApplication::setDesktopFileName(QStringLiteral("vorle"));
    try {
        const std::unique_ptr<Demonstration> demonstration = demo ? enterDemonstration() : nullptr;
        Application app(setupFor(demonstration.get(), adapters.installedApps));
        if (demonstration) {
            demonstration->populate(app.preferences());
        }
        Program program(app, adapters);
        const Interrupts interrupts;
        const auto onInterrupt = interrupts.token().onCancel([&program] { program.quit(); });
        return QApplication::exec();
    } catch (const std::system_error &error) {
        complain(systemRefusalText(error));
    } catch (const std::exception &error) {
        complain(QString::fromUtf8(error.what()));
    }
    return 1;
}

} // namespace vorle
