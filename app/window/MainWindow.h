#pragma once

#include "app/models/KeyboardMap.h"
#include "app/window/Fonts.h"
#include "app/window/ScreenEngine.h"
#include "app/window/Visits.h"
#include "app/window/WindowState.h"

#include <QElapsedTimer>
#include <QObject>
#include <QQuickWindow>
#include <QTimer>

#include <memory>

namespace vorle {

class InstalledApps;
class MotionSetting;
class Shell;

/// The main window and the panel under the notch: loads them, keeps the window's place, follows
/// the system's appearance. Main thread; the shell outlives it.
class MainWindow final : public QObject {
    Q_OBJECT
public:
    /// @param topicsFile  the window's place is kept beside it; empty: nowhere
    /// @param engine  often one that reads the screens already
    /// @throws std::runtime_error when the screens cannot be loaded: a fault of the build
    MainWindow(std::unique_ptr<ScreenEngine> engine, Shell &shell, const Typefaces &faces,
               QString topicsFile);
    ~MainWindow() override;

    /// Whether the system shows itself dark. Needs a QGuiApplication.
    static bool systemIsDark();

    QQuickWindow &window() const { return *m_window; }
    WindowState &state() { return m_state; }

    /// Moves as much as the system asks for, from now on; without it, everything moves. `motion`
    /// outlives the window.
    void observe(MotionSetting &motion);

    /// Shows apps with the icons that they have on this machine, from now on; without it, with
    /// their letters. `apps` outlives the window.
    void showIconsOf(const InstalledApps &apps);

    /// Shows the window and brings it to the front.
    Q_SLOT void raise();
    Q_SLOT void add();
    /// Opens the quick capture from the small panel, which took the place of what was in front.
    Q_SLOT void captureFromStatus();
    Q_SLOT void openSettings();
    Q_SLOT void writeFeedback();
    /// Shows the update view, which looks for one.
    Q_SLOT void lookForUpdate();
    /// Shows the window and does what the keyboard map calls so.
    void perform(KeyboardMap::Action action);
    /// Shows the window on the section of that title, whatever lay over it; on the one it shows
    /// already where there is none.
    void showSection(const QString &title);
    void saveState();
    /// Asks whether to quit although a run is under way; a yes is `quitAsked`.
    void askToClose();
    /// Shows the small panel of the menu-bar item, or puts it away.
    void toggleStatus(const QRect &item);
    bool isStatusShown() const;
    /// Shows the quick capture as it is.
    void showCapture();
    /// Whether the person writes just now, or has written in a form what goes with it.
    bool isWriting() const;
    /// Has what is being written saved, as leaving its field would.
    void finishEditing();

Q_SIGNALS:
    /// The user asked to close the window, which is still there.
    void closed();
    void quitAsked();
    /// The demonstration is to be opened; or, in one, the app that opened it is to come back.
    void demoAsked();
    void returnAsked();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    bool motionIsReduced() const;
    void followSystem();
    void followVisits();
    QRect lastPlace() const;
    void followPlace();
    void saveWindowGeometry();

    Shell &m_shell;
    QString m_topicsFile;
    WindowState m_state;
    Visits m_visits;
    MotionSetting *m_motion = nullptr;
    std::unique_ptr<ScreenEngine> m_engine;
    std::unique_ptr<QObject> m_look; // what the theme is turned by
    std::unique_ptr<QObject> m_screens;
    QQuickWindow *m_window = nullptr;
    std::unique_ptr<QObject> m_statusScreen;  // made when it is first asked for
    std::unique_ptr<QObject> m_captureScreen; // likewise
    QString m_statusFront;                    // the application that was in front of it
    QElapsedTimer m_statusGone;               // since it was put away
    QTimer m_moved;                           // since the window was
};

} // namespace vorle
