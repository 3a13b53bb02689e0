#pragma once

#include "app/window/CommandServer.h"
#include "app/window/DemoProcess.h"
#include "app/window/Entering.h"
#include "app/window/Gui.h"
#include "app/window/MainWindow.h"
#include "app/window/MenuBar.h"
#include "app/window/MenuTarget.h"
#include "app/window/Shell.h"
#include "app/window/SingleInstance.h"
#include "app/window/Tray.h"
#include "app/window/desktop/RunNotices.h"
#include "app/window/desktop/SharedLinks.h"
#include "app/wiring/ResumeTimer.h"
#include "app/wiring/RunTimer.h"
#include "desktop/ClaudeLauncher.h"
#include "desktop/HotKey.h"
#include "desktop/Notifier.h"
#include "desktop/WidgetPublisher.h"
#include "platform/KeyWatch.h"
#include "platform/LoginItem.h"
#include "platform/MailComposer.h"
#include "platform/MotionSetting.h"
#include "platform/Notifications.h"
#include "platform/UpdateEngine.h"
#include "update/Updater.h"

#include <QObject>

#include <functional>
#include <memory>
#include <optional>

namespace vorle {

class Application;

/// The app once it owns its topics: makes the windows, and hands each of them what it works with.
/// Main thread; what it is given outlives it.
class OpenApp final : public QObject {
    Q_OBJECT
public:
    /// What the system tells from the program's first moment on.
    struct Early {
        Notifications &notifications;
        LoginItem &login;
    };

    /// `left` is called once `quit()` has done its work.
    OpenApp(Application &app, const GuiAdapters &adapters, Early early, SingleInstance &instance,
            Entrance entrance, std::function<void()> left);

    void raise() { m_main.raise(); }
    /// Proposes the link that an address of ours brings; for any other address the window shows.
    void openAddress(const QString &address);
    /// Puts on disk what is not there yet, and goes on.
    void keep();
    /// Stops what is under way, keeps what it brought, and leaves.
    void quit();
    /// Once it has left: the program to start in its stead, where an update asks for that.
    const std::optional<QString> &successor() const { return m_successor; }

private:
    Shell::Parts partsOf(Application &app, const GuiAdapters &adapters, LoginItem &login);
    void followTimers();
    void followUpdates();
    QString underWay(Application &app, const cli::Context *asking = nullptr) const;
    Task<> updatesStopped();
    void followTray();
    void followWindow();
    Task<> leave();
    void reopen();
    void windowClosed();

    std::unique_ptr<ScreenEngine> m_screens; // until the window has them
    TopicStore &m_store;
    Preferences &m_preferences;
    WidgetPublisher &m_widget;
    Typefaces m_faces;
    Notifier m_notifier;
    ClaudeLauncher m_launcher;
    std::unique_ptr<GlobalHotKey> m_globalHotKey;
    HotKey m_hotKey;
    std::unique_ptr<KeyWatch> m_keys;
    std::unique_ptr<MailComposer> m_mail;
    std::unique_ptr<UpdateEngine> m_systemUpdates; // null where the program has its own
    UpdateEngine &m_updates;
    Updater m_updater;
    Shell m_shell;
    RunNotices m_notices;
    std::unique_ptr<MotionSetting> m_motion;
    MainWindow m_main;
    SharedLinks m_links;
    // Null where the system shows no menus over the screen.
    std::unique_ptr<MenuTarget> m_menuTarget;
    std::unique_ptr<MenuBar> m_menus;
    Tray m_tray;
    Entering m_entering;
    CommandServer m_commands;
    SingleInstance &m_instance;
    RunTimer m_timer;
    ResumeTimer m_resume;
    DemoProcess m_demo;
    std::function<void()> m_left;
    std::optional<QString> m_successor;
    bool m_quitting = false;
};

} // namespace vorle
