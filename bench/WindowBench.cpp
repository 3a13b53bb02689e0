// What the person feels of the window: from the start of the process to its first frame, beside a
// bare Qt Quick window; a triage key over 10,000 topics, to the handler's return, to the frame that
// shows the next card, to the disk; how long the main thread is held while a run hands its
// topics over; and what the whole program takes while nobody touches it.
//
// Each figure comes from fresh processes: this program starts itself again. On a shared machine the
// clock tells more of the others than of us, so the processor time stands beside it.
//
//     bench_window [start] [key] [frames] [idle]      all of them without an argument
//
// Offscreen and drawn in software, unless QT_QPA_PLATFORM and QT_QUICK_BACKEND say otherwise.

#include "app/models/TopicCard.h"
#include "app/window/ShellParts.h"
#include "bench/BenchHome.h"
#include "bench/BenchWindow.h"
#include "bench/FrameBench.h"
#include "bench/Standing.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMap>
#include <QProcess>
#include <QQmlComponent>
#include <QThread>

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <vector>

namespace {

using namespace vorle;

constexpr int starts = 11;
constexpr int keys = 31;
constexpr int bursts = 5;
constexpr int landings = 5;
constexpr int idleSeconds = 20;

using Samples = QMap<QByteArray, std::vector<double>>;

double quantile(std::vector<double> values, double part) {
    if (values.empty()) {
        return -1;
    }
    std::ranges::sort(values);
    return values[static_cast<std::size_t>(part * static_cast<double>(values.size() - 1))];
}
double median(const Samples &samples, const QByteArray &name) {
    return quantile(samples.value(name), 0.5);
}

void startWindow(int &argc, char **argv, double begun) {
    const QApplication qt(argc, argv);
    Application app(setup());
    auto screens = ScreenEngine::reading(); // beside the load, as the program does
    const Moment before;
    app.store();
    const Moment loaded;
    const Window window(app, std::move(screens));
    const Moment shown;
    tell("wall", shown.wall - begun - (loaded.wall - before.wall));
    tell("cpu", shown.process - (loaded.thread - before.thread));
    tell("loadWall", loaded.wall - before.wall);
    tell("loadCpu", loaded.thread - before.thread);
}

void startBare(int &argc, char **argv, double begun) {
    const QGuiApplication qt(argc, argv);
    QQmlEngine engine;
    QQmlComponent component(&engine);
    component.setData("import QtQuick\nWindow { visible: true; width: 1180; height: 780\n"
                      "Text { text: \"vorle\" } }",
                      {});
    const std::unique_ptr<QObject> object(component.create());
    auto *window = qobject_cast<QQuickWindow *>(object.get());
    bool shown = false;
    QObject::connect(window, &QQuickWindow::frameSwapped, window, [&] { shown = true; });
    turnUntil([&] { return shown; }, "the first frame");
    const Moment end;
    tell("wall", end.wall - begun);
    tell("cpu", end.process);
}

/// Whether the card shown open is that of the chosen topic.
bool showsChosen(const QQuickWindow &window) {
    const auto *screen = window.property("screen").value<QObject *>();
    const auto *selection = window.property("selection").value<TopicSelection *>();
    return selection->shownId() == selection->currentId() && !selection->shownId().isEmpty() &&
           !screen->property("topic").value<TopicCard>().topicId().isEmpty();
}

void press(QQuickWindow &window, int key) {
    QKeyEvent down(QEvent::KeyPress, key, Qt::NoModifier);
    QCoreApplication::sendEvent(&window, &down);
}
void release(QQuickWindow &window, int key) {
    QKeyEvent up(QEvent::KeyRelease, key, Qt::NoModifier);
    QCoreApplication::sendEvent(&window, &up);
}

void pressKeys(int &argc, char **argv) {
    const QApplication qt(argc, argv);
    Application app(setup());
    // The window's most laborious line: it looks whether all came with the last search.
    const QDateTime end = app.store().topics().constFirst()->foundAt.addSecs(60);
    app.preferences().change(&Settings::lastReport, LastReport{end, 10'000, 0, 600, {}});
    Window window(app);
    QQuickWindow &shown = window.main.window();
    TopicStore &store = app.store();
    bool saved = false;
    QObject::connect(&store, &TopicStore::saved, &shown, [&] { saved = true; });
    store.prepareSaves();
    turnFor(3'000);
    const int waiting = window.shell.inbox()->count();

    for (int i = 0; i < keys; ++i) {
        constexpr int key = Qt::Key_G;
        saved = false;
        const int frames = window.frames;
        const Moment pressed;
        press(shown, key);
        const Moment handled;
        turnUntil([&] { return window.frames > frames; }, "a frame after a key");
        const Moment painted;
        const bool next = showsChosen(shown);
        turnUntil([&] { return saved; }, "a save");
        const Moment onDisk;
        release(shown, key);
        turnUntil([&] { return showsChosen(shown); }, "the next card");
        tell("handlerWall", handled.wall - pressed.wall);
        tell("handlerCpu", handled.thread - pressed.thread);
        tell("frameWall", painted.wall - pressed.wall);
        tell("frameCpu", painted.thread - pressed.thread);
        tell("nextShown", next ? 1 : 0);
        tell("diskWall", onDisk.wall - pressed.wall);
        turnFor(500); // the cards have moved to their places
    }
    for (int i = 0; i < bursts; ++i) {
        const Moment first;
        for (int key = 0; key < 20; ++key) {
            press(shown, Qt::Key_G);
            release(shown, Qt::Key_G);
            QCoreApplication::processEvents();
        }
        const Moment last;
        store.flush();
        const Moment onDisk;
        tell("burstKeysWall", last.wall - first.wall);
        tell("burstDiskWall", onDisk.wall - first.wall);
        turnFor(1'000);
    }
    tell("decided", waiting - window.shell.inbox()->count());
}

/// Runs this program again as that child and adds what it tells.
void runChild(const QString &kind, const BenchHome &home, Samples &samples) {
    QProcess child;
    child.setProcessEnvironment(home.environment());
    child.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    const QString begun = QString::number(now(CLOCK_MONOTONIC), 'f', 4);
    child.start(QCoreApplication::applicationFilePath(), {QStringLiteral("child"), kind, begun});
    if (!child.waitForFinished(300'000) || child.exitCode() != 0) {
        std::fprintf(stderr, "the child %s failed\n", qPrintable(kind));
    }
    for (const QByteArray &line : child.readAllStandardOutput().split('\n')) {
        if (const auto parts = line.split(' '); parts.size() == 2) {
            samples[parts[0]].push_back(parts[1].toDouble());
        }
    }
}

void measureStarts() {
    const BenchHome empty(0);
    const BenchHome full(10'000);
    Samples bare;
    Samples ours;
    Samples loaded;
    for (int i = 0; i <= starts; ++i) {
        if (i == 1) { // the first only fills the caches
            bare = ours = loaded = {};
        }
        runChild(QStringLiteral("bare"), empty, bare);
        runChild(QStringLiteral("window"), empty, ours);
        runChild(QStringLiteral("window"), full, loaded);
    }
    std::printf("start to first frame, the load apart        wall ms   processor ms\n");
    const auto line = [&](const char *name, const Samples &samples) {
        std::printf("  %-36s %8.0f (%4.2f) %6.0f (%4.2f)   load %.0f, %.0f\n", name,
                    median(samples, "wall"), median(samples, "wall") / median(bare, "wall"),
                    median(samples, "cpu"), median(samples, "cpu") / median(bare, "cpu"),
                    median(samples, "loadWall"), median(samples, "loadCpu"));
    };
    line("a bare window with one text", bare);
    line("empty store", ours);
    line("10,000 topics", loaded);
}

void measureKeys() {
    const BenchHome home(10'000);
    Samples samples;
    runChild(QStringLiteral("keys"), home, samples);
    std::printf("a triage key at 10,000 topics (%.0f decided)  median    90 %%   worst, ms\n",
                median(samples, "decided"));
    for (const auto &[name, text] : std::initializer_list<std::pair<QByteArray, const char *>>{
             {"handlerWall", "handler's return"},
             {"handlerCpu", "  main thread's processor time"},
             {"frameWall", "next frame rendered"},
             {"frameCpu", "  main thread's processor time"},
             {"nextShown", "  it shows the next card (1: yes)"},
             {"diskWall", "on disk"},
             {"burstKeysWall", "20 keys handled, with their frames"},
             {"burstDiskWall", "20 keys on disk"}}) {
        const auto values = samples.value(name);
        std::printf("  %-40s %8.2f %8.2f %8.2f\n", text, quantile(values, 0.5),
                    quantile(values, 0.9), quantile(values, 1));
    }
}

/// Thirty topics with pictures, landed on 2,000 while the list and the page are looked at.
void measureFrames() {
    const BenchHome home(2'000);
    Samples samples;
    for (int i = 0; i < landings; ++i) {
        runChild(QStringLiteral("frames"), home, samples);
    }
    std::printf("a run of 30 topics with pictures lands on 2,000 (medians of %d)   ms\n", landings);
    for (const auto &[name, text] : std::initializer_list<std::pair<QByteArray, const char *>>{
             {"landWall", "landing: longest stretch of the main thread"},
             {"landCpu", "  longest by its processor time"},
             {"landOver", "  stretches over 16.7 ms"},
             {"landOverCpu", "  by processor time"},
             {"walkWall", "walking through them: longest stretch"},
             {"walkCpu", "  longest by processor time"},
             {"walkOver", "  stretches over 16.7 ms"},
             {"walkOverCpu", "  by processor time"},
             {"frames", "frames drawn"}}) {
        std::printf("  %-50s %8.2f\n", text, median(samples, name));
    }
}

/// The whole program, as a person leaves it: its window open, nothing going on.
void measureIdle() {
    std::printf("idle for %d s            PSS MB  private MB  wake-ups/s  processor ms\n",
                idleSeconds);
    for (const int topics : {0, 2'000}) {
        const BenchHome home(topics);
        QProcess program;
        program.setProcessEnvironment(home.environment());
        program.setProcessChannelMode(QProcess::ForwardedChannels);
        program.start(QCoreApplication::applicationDirPath() + QStringLiteral("/vorle"),
                      QStringList());
        program.waitForStarted();
        // Shown, what was loaded encoded, the pool's threads gone, and the mascot of an empty
        // section dozed off: until then it blinks.
        QThread::sleep(50);
        const Standing before = Standing::of(program.processId());
        QThread::sleep(idleSeconds);
        const Standing after = Standing::of(program.processId());
        std::printf("  %6d topics        %8.0f %11.0f %11.2f %13.1f\n", topics, after.pss,
                    after.privately, (after.switches - before.switches) / idleSeconds,
                    after.processor - before.processor);
        program.terminate();
        if (!program.waitForFinished() || program.exitCode() != 0) {
            std::fprintf(stderr, "the program failed\n");
        }
    }
}

} // namespace

int main(int argc, char **argv) {
    if (argc == 4 && QByteArrayView(argv[1]) == "child") {
        const QByteArray kind(argv[2]);
        const double begun = QByteArray(argv[3]).toDouble();
        if (kind == "bare") {
            startBare(argc, argv, begun);
        } else if (kind == "window") {
            startWindow(argc, argv, begun);
        } else if (kind == "frames") {
            landRun(argc, argv);
        } else {
            pressKeys(argc, argv);
        }
        std::fflush(stdout);
        return 0;
    }
    const QCoreApplication app(argc, argv);
    const QStringList asked = QCoreApplication::arguments().sliced(1);
    const auto wants = [&](const QString &what) { return asked.isEmpty() || asked.contains(what); };
    if (wants(QStringLiteral("start"))) {
        measureStarts();
    }
    if (wants(QStringLiteral("key"))) {
        measureKeys();
    }
    if (wants(QStringLiteral("frames"))) {
        measureFrames();
    }
    if (wants(QStringLiteral("idle"))) {
        measureIdle();
    }
    return 0;
}
