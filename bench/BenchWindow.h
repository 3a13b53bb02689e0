#pragma once

#include "app/window/MainWindow.h"
#include "app/window/ShellParts.h"
#include "app/wiring/Application.h"
#include "desktop/ClaudeLauncher.h"
#include "desktop/HotKey.h"
#include "desktop/Notifier.h"
#include "platform/fakes/FakeFilePicker.h"
#include "platform/fakes/FakeFileReveal.h"
#include "platform/fakes/FakeGlobalHotKey.h"
#include "platform/fakes/FakeLinkOpener.h"
#include "platform/fakes/FakeLoginItem.h"
#include "platform/fakes/FakeMailComposer.h"
#include "platform/fakes/FakeNotifications.h"
#include "platform/fakes/FakePasteboard.h"
#include "platform/fakes/FakeTerminals.h"
#include "platform/fakes/FakeUpdateEngine.h"
#include "platform/qt/QtKeyWatch.h"
#include "update/Updater.h"

#include <QElapsedTimer>
#include <QTimer>

#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <functional>

namespace vorle {

inline double now(clockid_t clock) {
    timespec time{};
    clock_gettime(clock, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

/// Milliseconds by the clock, and of the processor: of this thread or of the whole process.
struct Moment {
    double wall = now(CLOCK_MONOTONIC);
    double thread = now(CLOCK_THREAD_CPUTIME_ID);
    double process = now(CLOCK_PROCESS_CPUTIME_ID);
};

/// How a child tells its parent.
inline void tell(const char *name, double value) { std::printf("%s %.4f\n", name, value); }

/// Sleeps between events, so that waiting takes no processor time.
inline void turnUntil(const std::function<bool()> &done, const char *what) {
    QTimer wakesUp; // where nothing else happens any more
    wakesUp.start(100);
    QElapsedTimer timer;
    timer.start();
    while (!done()) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        if (timer.hasExpired(60'000)) {
            std::fprintf(stderr, "waited in vain for %s\n", what);
            std::exit(1);
        }
    }
}
inline void turnFor(int milliseconds) {
    QElapsedTimer timer;
    timer.start();
    turnUntil([&] { return timer.elapsed() >= milliseconds; }, "nothing");
}

/// The window of the program on the topics file the environment names.
struct Window {
    explicit Window(Application &app,
                    std::unique_ptr<ScreenEngine> screens = ScreenEngine::reading())
        : launcher({app.agent().locator(), app.preferences(), terminals, pasteboard, links})
        , notifier({notifications, app.preferences(), app.clock(), {}})
        , hotKey(app.preferences(), globalHotKey)
        , updater({.engine = updates, .clock = app.clock(), .version = QStringLiteral("1")})
        , shell(shellParts(app, {links, pasteboard, launcher, files, reveal, notifier, login,
                                 hotKey, keys, mail, updater}))
        , main(std::move(screens), shell, faces, app.store().file()) {
        QObject::connect(&main.window(), &QQuickWindow::frameSwapped, &main, [this] { ++frames; });
        main.raise();
        turnUntil([this] { return frames > 0; }, "the first frame");
    }

    Typefaces faces = Typefaces::load();
    test::FakeTerminals terminals;
    test::FakePasteboard pasteboard;
    test::FakeLinkOpener links;
    test::FakeFilePicker files;
    test::FakeFileReveal reveal;
    test::FakeNotifications notifications;
    test::FakeLoginItem login;
    ClaudeLauncher launcher;
    Notifier notifier;
    test::FakeGlobalHotKey globalHotKey;
    HotKey hotKey;
    QtKeyWatch keys;
    test::FakeMailComposer mail;
    test::FakeUpdateEngine updates;
    Updater updater;
    Shell shell;
    MainWindow main;
    int frames = 0;
};

inline Application::Setup setup() {
    Application::Setup setup;
    setup.settingsFile = qEnvironmentVariable("VORLE_SETTINGS");
    return setup;
}

} // namespace vorle
