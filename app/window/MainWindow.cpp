#include "app/window/MainWindow.h"

#include "app/window/AppIcons.h"
#include "app/window/KeyRepeatFilter.h"
#include "app/window/Shell.h"
#include "app/window/pictures/SourcePictures.h"
#include "base/Clock.h"
#include "platform/MotionSetting.h"

#include <QCursor>
#include <QGuiApplication>
#include <QIcon>
#include <QPalette>
#include <QQuickItem>
#include <QScreen>
#include <QStyleHints>

#include <algorithm>

namespace vorle {

namespace {

constexpr QSize usualSize(1180, 780);

} // namespace

bool MainWindow::systemIsDark() {
#if QT_VERSION >= QT_VERSION_CHECK(6, 5, 0)
    return QGuiApplication::styleHints()->colorScheme() == Qt::ColorScheme::Dark;
#else
    const QPalette palette = QGuiApplication::palette();
    return palette.color(QPalette::WindowText).lightness() >
           palette.color(QPalette::Window).lightness();
#endif
}

MainWindow::MainWindow(std::unique_ptr<ScreenEngine> engine, Shell &shell, const Typefaces &faces,
                       QString topicsFile)
    : m_shell(shell)
    , m_topicsFile(std::move(topicsFile))
    , m_state(WindowState::load(m_topicsFile))
    , m_visits(m_state.seen, m_state.newAfter)
    , m_engine(std::move(engine)) {
    shell.sections()->setCurrent(
        static_cast<Section>(std::clamp(m_state.section, 0, sectionCount - 1)));
    m_visits.expect(shell.clock().now());
    shell.inbox()->setNewSince(m_visits.newSince());
    shell.drafts()->take(m_state.drafts.value_or(QMap<QString, QString>()));
    m_engine->qml().addImageProvider(QStringLiteral("pictures"), new SourcePictures);
    const auto shellProperty = QVariant::fromValue(&shell);
    m_look = m_engine->made(QStringLiteral("theme/Look.qml"),
                            {{QStringLiteral("settings"), QVariant::fromValue(shell.settings())},
                             {QStringLiteral("systemDark"), systemIsDark()},
                             {QStringLiteral("reducedMotion"), motionIsReduced()},
                             {QStringLiteral("displayFamily"), faces.display},
                             {QStringLiteral("textFamily"), faces.text}});
    // Made at its size: its screens would else be laid out for none, and once more when it shows.
    const QRect place = lastPlace();
    m_screens = m_engine->made(QStringLiteral("screens/Main.qml"),
                               {{QStringLiteral("shell"), shellProperty},
                                {QStringLiteral("width"), place.width()},
                                {QStringLiteral("height"), place.height()}});
    m_window = qobject_cast<QQuickWindow *>(m_screens.get());
    m_window->setGeometry(place);
    followPlace();
    followVisits();
    m_window->installEventFilter(this);
    new KeyRepeatFilter(*m_window);
    connect(m_window, SIGNAL(quitAsked()), this, SIGNAL(quitAsked()));
    connect(m_window, SIGNAL(raiseAsked()), this, SLOT(raise()));
    connect(m_window, SIGNAL(demoAsked()), this, SIGNAL(demoAsked()));
    connect(m_window, SIGNAL(returnAsked()), this, SIGNAL(returnAsked()));
    connect(&shell, &Shell::updateAsked, this, [this] { perform(KeyboardMap::ShowUpdate); });
    connect(shell.quickCapture(), &QuickCapture::raised, this, &MainWindow::showCapture);
    connect(shell.quickCapture(), &QuickCapture::opened, this, [this] {
        showCapture();
        QMetaObject::invokeMethod(m_captureScreen.get(), "begin");
    });
}

MainWindow::~MainWindow() {
    m_window->disconnect(this);
    if (m_motion != nullptr) {
        m_motion->follow({});
    }
}

void MainWindow::followVisits() {
    connect(m_window, &QWindow::activeChanged, this, [this] {
        if (m_window->isActive()) {
            m_visits.come(m_shell.clock().now());
            m_shell.inbox()->setNewSince(m_visits.newSince());
        } else {
            m_visits.leave(m_shell.inbox()->seen());
        }
    });
}

void MainWindow::observe(MotionSetting &motion) {
    m_motion = &motion;
    motion.follow([this] { followSystem(); });
    followSystem();
}

void MainWindow::showIconsOf(const InstalledApps &apps) {
    m_engine->qml().addImageProvider(QStringLiteral("apps"),
                                     new AppIcons(apps, QIcon::themeName()));
}

bool MainWindow::motionIsReduced() const {
    return qEnvironmentVariableIsSet("VORLE_REDUCED_MOTION") ||
           (m_motion != nullptr && m_motion->isReduced());
}

QRect MainWindow::lastPlace() const {
    QList<QRect> screens;
    for (const QScreen *screen : QGuiApplication::screens()) {
        screens += screen->availableGeometry();
    }
    return onScreen(m_state.geometry(), usualSize, screens);
}

void MainWindow::followPlace() {
    // Its place is asked for once it stands: on its way to fill the screen it is not told yet that
    // it does.
    constexpr int stands = 400;
    m_moved.setSingleShot(true);
    m_moved.setInterval(stands);
    connect(&m_moved, &QTimer::timeout, this, &MainWindow::saveWindowGeometry);
}

void MainWindow::saveWindowGeometry() {
    const QWindow::Visibility now = m_window->visibility();
    if (now == QWindow::Windowed) {
        m_state.setGeometry(m_window->geometry());
    }
    if (now == QWindow::Windowed || now == QWindow::Maximized) {
        m_state.maximised = now == QWindow::Maximized;
    }
}

void MainWindow::raise() {
    // Not by show(): that takes a window that fills the screen for one to be made smaller.
    if (m_window->isVisible()) {
        m_window->setWindowStates(m_window->windowStates() & ~Qt::WindowMinimized);
    } else if (m_state.maximised.value_or(false)) {
        m_window->showMaximized();
    } else {
        m_window->show();
    }
    m_window->raise();
    m_window->requestActivate();
}

void MainWindow::perform(KeyboardMap::Action action) {
    raise();
    QMetaObject::invokeMethod(m_window, "perform", Q_ARG(int, static_cast<int>(action)));
}

void MainWindow::showSection(const QString &title) {
    raise();
    for (int section = 0; section < sectionCount; ++section) {
        if (Sections::title(static_cast<Section>(section)) == title) {
            QMetaObject::invokeMethod(m_window, "go", Q_ARG(int, section));
        }
    }
}

void MainWindow::toggleStatus(const QRect &item) {
    if (!m_statusScreen) {
        m_statusScreen = m_engine->made(QStringLiteral("screens/StatusPanel.qml"),
                                        {{QStringLiteral("shell"), QVariant::fromValue(&m_shell)}});
        auto *made = qobject_cast<QQuickWindow *>(m_statusScreen.get());
        connect(made, &QWindow::visibleChanged, this, [this](bool shown) {
            if (!shown) {
                m_statusGone.start();
            }
        });
        new KeyRepeatFilter(*made);
        // On X11 task bars list tool windows, and pass over tool bars; elsewhere it says nothing.
        constexpr int toolBar = 0x8;
        made->setProperty("_q_xcb_wm_window_type", toolBar);
        connect(made, SIGNAL(openAsked()), this, SLOT(raise()));
        connect(made, SIGNAL(addAsked()), this, SLOT(captureFromStatus()));
        connect(made, SIGNAL(settingsAsked()), this, SLOT(openSettings()));
    }
    auto *panel = qobject_cast<QQuickWindow *>(m_statusScreen.get());
    // The click on the item that should put it away has taken the keyboard from it already.
    constexpr qint64 sameClick = 300;
    if (panel->isVisible() || (m_statusGone.isValid() && m_statusGone.elapsed() < sameClick)) {
        panel->hide();
        return;
    }
    const QScreen *screen = QGuiApplication::screenAt(item.center());
    const QRect free = (screen ? screen : QGuiApplication::primaryScreen())->availableGeometry();
    m_shell.refresh();
    m_statusFront = m_shell.quickCapture()->frontApp();
    panel->setPosition(besideItem(item, panel->size(), free));
    panel->show();
    panel->raise();
    panel->requestActivate();
}

bool MainWindow::isStatusShown() const {
    const auto *panel = qobject_cast<QQuickWindow *>(m_statusScreen.get());
    return panel != nullptr && panel->isVisible();
}

void MainWindow::captureFromStatus() { m_shell.quickCapture()->openOver(m_statusFront); }

void MainWindow::showCapture() {
    if (!m_captureScreen) {
        m_captureScreen = m_engine->made(
            QStringLiteral("screens/QuickCapturePanel.qml"),
            {{QStringLiteral("capture"), QVariant::fromValue(m_shell.quickCapture())}});
        auto *made = qobject_cast<QQuickWindow *>(m_captureScreen.get());
        connect(made, &QWindow::visibleChanged, m_shell.quickCapture(), &QuickCapture::setShown);
        new KeyRepeatFilter(*made);
    }
    auto *panel = qobject_cast<QQuickWindow *>(m_captureScreen.get());
    if (!panel->isVisible()) {
        // Where the person looks: the screen with the pointer, above its middle.
        const QScreen *screen = QGuiApplication::screenAt(QCursor::pos());
        const QRect free =
            (screen ? screen : QGuiApplication::primaryScreen())->availableGeometry();
        panel->setPosition(free.x() + (free.width() - panel->width()) / 2,
                           free.y() + free.height() / 5);
        panel->show();
    }
    panel->raise();
    panel->requestActivate();
}

bool MainWindow::isWriting() const {
    const auto holds = [](const auto &self, const QQuickItem &item) -> bool {
        const QList<QQuickItem *> children = item.childItems();
        return item.property("unsaved").toBool() || item.property("editing").toBool() ||
               std::ranges::any_of(children,
                                   [&](const QQuickItem *child) { return self(self, *child); });
    };
    const QQuickItem *field = m_window->isActive() ? m_window->activeFocusItem() : nullptr;
    const bool types = field != nullptr &&
                       (field->inherits("QQuickTextInput") || field->inherits("QQuickTextEdit")) &&
                       !field->property("readOnly").toBool() &&
                       !field->property("text").toString().isEmpty();
    return types || holds(holds, *m_window->contentItem());
}

void MainWindow::finishEditing() {
    if (QQuickItem *item = m_window->activeFocusItem()) {
        item->setFocus(false);
    }
    // A row keeps its field open while another window is in front, or where it was refused.
    QList<QQuickItem *> open;
    const auto look = [&](const auto &self, QQuickItem &item) -> void {
        if (item.property("editing").toBool() && item.metaObject()->indexOfMethod("leave()") >= 0) {
            open += &item;
        }
        for (QQuickItem *child : item.childItems()) {
            self(self, *child);
        }
    };
    look(look, *m_window->contentItem());
    for (QQuickItem *row : open) {
        QMetaObject::invokeMethod(row, "leave");
    }
}

void MainWindow::add() { perform(KeyboardMap::AddTopic); }

void MainWindow::openSettings() { perform(KeyboardMap::OpenSettings); }

void MainWindow::writeFeedback() { perform(KeyboardMap::SendFeedback); }

void MainWindow::lookForUpdate() { perform(KeyboardMap::LookForUpdate); }

void MainWindow::askToClose() {
    raise();
    QMetaObject::invokeMethod(m_window, "askToClose");
}

void MainWindow::saveState() {
    saveWindowGeometry();
    m_state.section = static_cast<int>(m_shell.sections()->current());
    const QMap<QString, QString> &drafts = m_shell.drafts()->all();
    m_state.drafts = drafts.isEmpty() ? std::nullopt : std::optional(drafts);
    Visits ended = m_visits; // if it ends now
    ended.leave(m_shell.inbox()->seen());
    m_state.seen = ended.left();
    m_state.newAfter = ended.newSince();
    m_state.save(m_topicsFile);
}

bool MainWindow::eventFilter(QObject *watched, QEvent *event) {
    if (watched == m_window && event->type() == QEvent::Close) {
        saveState();
        event->ignore();
        Q_EMIT closed();
        return true;
    }
    if (watched == m_window && (event->type() == QEvent::Resize || event->type() == QEvent::Move)) {
        m_moved.start();
    }
    if (event->type() == QEvent::ApplicationPaletteChange || event->type() == QEvent::ThemeChange) {
        followSystem();
    }
    return QObject::eventFilter(watched, event);
}

void MainWindow::followSystem() {
    m_look->setProperty("systemDark", systemIsDark());
    m_look->setProperty("reducedMotion", motionIsReduced());
}

} // namespace vorle
