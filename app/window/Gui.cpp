#include "app/window/Gui.h"

#include "app/console/Console.h"
#include "app/demo/Demonstration.h"
#include "app/window/OpenApp.h"
#include "app/window/Opening.h"
#include "app/window/QuitHandler.h"
#include "app/window/SingleInstance.h"
#include "app/window/Tray.h"
#include "app/window/WaitingWindow.h"
#include "app/window/desktop/AddressEvents.h"
#include "app/wiring/Application.h"
#include "app/wiring/Interrupts.h"
#include "app/wiring/Startup.h"
#include "base/French.h"
#include "base/Log.h"
#include "base/SystemErrorText.h"
#include "platform/LoginItem.h"
#include "platform/Notifications.h"
#include "platform/WidgetTimelines.h"
#include "update/Installation.h"

#include <QApplication>
#include <QFile>
#include <QMessageBox>

#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <exception>
#include <functional>
#include <memory>
#include <optional>
#include <system_error>

namespace vorle {

namespace {

void complain(const QString &text) { std::fprintf(stderr, "%s\n", text.toUtf8().constData()); }

/// Whether what it complains of is seen on standard error, or can be seen nowhere else.
bool isHeard() {
    return cli::Console::isHeard() || QGuiApplication::platformName() == u"offscreen";
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

/// Has the launcher know that this version, should it be on trial, does not hang: it waits for
/// somebody, and may never open.
void noteAnswer() {
    detach(
        [](QString program) -> Task<> {
            co_await onPool([program] {
                if (const auto here = Installation::of(program)) {
                    here->noteAnswer();
                }
                return true;
            });
        }(QCoreApplication::applicationFilePath()),
        QStringLiteral("updates"));
}

/// The program from its start to its end: waits until it may be the app, opens, leaves.
class Program final : public QObject {
public:
    Program(Application &app, const GuiAdapters &adapters, Entrance entrance)
        : m_app(app)
        , m_adapters(adapters)
        , m_entrance(entrance)
        , m_notifications(adapters.notifications())
        , m_login(adapters.login())
        , m_instance(app.topicsFile()) {
        QGuiApplication::setQuitOnLastWindowClosed(false);
        QGuiApplication::setWindowIcon(Tray::picture(0));
        connect(&m_instance, &SingleInstance::raiseAsked, this, [this] { raise(); });
        connect(&m_quitHandler, &QuitHandler::quitAsked, this, [this] { quit(); });
        connect(&m_quitHandler, &QuitHandler::keepAsked, this, [this] {
            if (m_open) {
                m_open->keep();
            }
        });
        detach(open(), QStringLiteral("opening"));
    }

    void quit() {
        if (m_open) {
            m_open->quit();
        } else if (m_refusal) {
            m_refusal->reject();
        } else {
            m_giveUp.cancel();
        }
    }

    /// Once it has left: see OpenApp.
    std::optional<QString> successor() const { return m_open ? m_open->successor() : std::nullopt; }

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
            m_open = std::make_unique<OpenApp>(
                m_app, m_adapters, OpenApp::Early{*m_notifications, *m_login}, m_instance,
                m_entrance, [this] { m_quitHandler.left(); });
            m_waiting.reset();
            m_addresses.follow([this](const QString &address) { m_open->openAddress(address); });
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
        noteAnswer();
        m_refusal = std::make_unique<QMessageBox>(QMessageBox::Critical, QStringLiteral("vorle"),
                                                  problem, QMessageBox::Close);
        connect(m_refusal.get(), &QMessageBox::finished, this, [this] { m_quitHandler.left(1); });
        m_refusal->show();
    }

    void wait(Opening::Holder holder) {
        const QString sentence = Opening::text(holder);
        complain(sentence);
        noteAnswer();
        if (m_waiting) {
            m_waiting->setSentence(sentence);
            return;
        }
        m_waiting =
            std::make_unique<WaitingWindow>(m_app.preferences(), Typefaces::load(), sentence);
        connect(m_waiting.get(), &WaitingWindow::givenUp, this, [this] { quit(); });
    }

    void raise() {
        if (m_open) {
            m_open->raise();
        } else if (m_waiting) {
            m_waiting->raise();
        }
    }

    Application &m_app;
    const GuiAdapters &m_adapters;
    Entrance m_entrance;
    // Before any wait: the system tells once, as soon as the program runs, that it was opened by a
    // click on a notification, or with the session.
    std::unique_ptr<Notifications> m_notifications;
    std::unique_ptr<LoginItem> m_login;
    QuitHandler m_quitHandler;
    AddressEvents m_addresses;
    SingleInstance m_instance;
    CancelSource m_giveUp;
    std::unique_ptr<WaitingWindow> m_waiting;
    std::unique_ptr<QMessageBox> m_refusal;
    std::unique_ptr<OpenApp> m_open;
};

/// Goes on as another program, a new version of this one: the same process, so that nothing of the
/// old one is left that could hold on to the topics. Comes back where that is refused.
void goOnAs(const QString &program) {
    QByteArray path = QFile::encodeName(program);
    const std::array<char *, 2> arguments{path.data(), nullptr};
    ::execv(path.constData(), arguments.data());
    logLine(QStringLiteral("updates: the new version could not be started: %1")
                .arg(QString::fromLocal8Bit(std::strerror(errno))));
}

/// How the program ended, and what is to go on in its place.
struct Left {
    int status = 1;
    std::optional<QString> successor;
};

/// All of it is gone when this returns, the screen's side too: only then does what was copied here
/// pass to who keeps it.
Left runToItsEnd(int &argc, char **argv, const GuiAdapters &adapters, Entrance entrance) {
    const QApplication qt(argc, argv);
    QGuiApplication::setApplicationDisplayName(QStringLiteral("vorle"));
    QGuiApplication::setDesktopFileName(QStringLiteral("fr.vorle.vorle"));
    Left left;
    try {
        const std::unique_ptr<Demonstration> demonstration =
            entrance == Entrance::Demonstration ? enterDemonstration() : nullptr;
        Application::Setup setup = setupFor(demonstration.get(), adapters.installedApps,
                                            adapters.container, adapters.updates);
        setup.signatures = adapters.signatures;
        setup.widgetsChanged = [&widgets = adapters.widgets] { widgets.reload(); };
        Application app(std::move(setup));
        if (demonstration) {
            demonstration->populate(app.preferences());
        }
        Program program(app, adapters, entrance);
        const Interrupts interrupts;
        const auto onInterrupt = interrupts.token().onCancel([&program] { program.quit(); });
        left.status = QApplication::exec();
        left.successor = program.successor();
    } catch (const std::system_error &error) {
        complain(systemRefusalText(error));
    } catch (const std::exception &error) {
        complain(QString::fromUtf8(error.what()));
    }
    return left;
}

} // namespace

int runGui(int &argc, char **argv, const GuiAdapters &adapters, Entrance entrance) {
    if (!hasScreen()) {
        complain(
            French::tr("Il n’y a pas d’écran ici. Les commandes marchent sans\u00A0: vorle aide"));
        return 1;
    }
    const Left left = runToItsEnd(argc, argv, adapters, entrance);
    if (left.successor) {
        goOnAs(*left.successor);
    }
    return left.status;
}

} // namespace vorle
