#pragma once

#include "bench/BenchWindow.h"
#include "bench/ManyTopics.h"

#include <QAbstractEventDispatcher>
#include <QApplication>
#include <QDir>
#include <QImage>
#include <QKeyEvent>

#include <algorithm>
#include <optional>

namespace vorle {

/// How long the main thread was away from its event loop, each time it was: a frame that is due
/// meanwhile waits for it.
class Stretches {
public:
    Stretches() {
        auto *loop = QAbstractEventDispatcher::instance();
        m_awake = QObject::connect(loop, &QAbstractEventDispatcher::awake, [this] { begin(); });
        m_asleep =
            QObject::connect(loop, &QAbstractEventDispatcher::aboutToBlock, [this] { end(); });
    }
    ~Stretches() {
        QObject::disconnect(m_awake);
        QObject::disconnect(m_asleep);
    }
    Stretches(const Stretches &) = delete;
    Stretches &operator=(const Stretches &) = delete;

    double longestWall = 0;
    double longestCpu = 0;
    int over = 0;    ///< longer than a frame, by the clock
    int overCpu = 0; ///< the same, by the processor

private:
    void begin() {
        if (!m_busy) {
            m_from = Moment();
            m_busy = true;
        }
    }
    void end() {
        if (!m_busy) {
            return;
        }
        m_busy = false;
        constexpr double frame = 16.7;
        const Moment now;
        longestWall = std::max(longestWall, now.wall - m_from.wall);
        longestCpu = std::max(longestCpu, now.thread - m_from.thread);
        over += now.wall - m_from.wall > frame ? 1 : 0;
        overCpu += now.thread - m_from.thread > frame ? 1 : 0;
    }

    QMetaObject::Connection m_awake;
    QMetaObject::Connection m_asleep;
    Moment m_from;
    bool m_busy = false;
};

/// A run hands over thirty topics, each with a picture as large as sites have them, batch by batch
/// as they are judged, while somebody walks down the list and reads pages.
inline void landRun(int &argc, char **argv) {
    qputenv("QT_NO_GLIB", "1"); // whose loop does not tell when it begins to wait
    const QApplication qt(argc, argv);
    const QString pictures = QDir::homePath() + QStringLiteral("/pictures");
    QDir().mkpath(pictures);
    qputenv("VORLE_PICTURES", pictures.toLocal8Bit());
    constexpr int landed = 30;
    for (int i = 0; i < landed; ++i) {
        QImage drawn(1200, 630, QImage::Format_RGB32);
        for (int y = 0; y < drawn.height(); ++y) {
            for (int x = 0; x < drawn.width(); ++x) {
                drawn.setPixel(x, y, qRgb(x * i, y + 3 * i, (x * y) >> 6));
            }
        }
        drawn.save(pictures + QStringLiteral("/%1.img").arg(i), i % 2 == 0 ? "JPEG" : "PNG");
    }
    Application app(setup());
    app.store();
    Window window(app);
    TopicStore &store = app.store();
    store.prepareSaves();
    turnFor(3'000);

    std::optional<Stretches> landing(std::in_place);
    const int frames = window.frames;
    QList<QUuid> all;
    constexpr int batch = 6;
    for (int from = 0; from < landed; from += batch) {
        QList<Topic> topics = manyTopics(batch);
        for (Topic &topic : topics) {
            topic.status = TopicStatus::Pending;
            topic.score = 10;
        }
        const QList<QUuid> ids = store.add(topics);
        all += ids;
        turnFor(120);
        for (qsizetype i = 0; i < ids.size(); ++i) {
            store.setGallery(
                ids[i], {{topics[i].sources.first().url, QStringLiteral("%1.img").arg(from + i)}});
            turnFor(20);
        }
    }
    store.releasePending(all);
    turnFor(400);
    tell("landWall", landing->longestWall);
    tell("landCpu", landing->longestCpu);
    tell("landOver", landing->over);
    tell("landOverCpu", landing->overCpu);
    landing.reset();
    Stretches walk;
    // Through them, in the list and on their pages.
    QQuickWindow &shown = window.main.window();
    const auto press = [&shown](int key) {
        for (const QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease}) {
            QKeyEvent event(type, key, Qt::NoModifier);
            QCoreApplication::sendEvent(&shown, &event);
        }
    };
    press(Qt::Key_Home);
    for (int i = 0; i < landed; ++i) {
        if (i == landed / 2) {
            press(Qt::Key_Space);
        }
        press(Qt::Key_Down);
        turnFor(60);
    }
    turnFor(400);
    tell("walkWall", walk.longestWall);
    tell("walkCpu", walk.longestCpu);
    tell("walkOver", walk.over);
    tell("walkOverCpu", walk.overCpu);
    tell("frames", window.frames - frames);
}

} // namespace vorle
