#include "app/window/MainWindow.h"

#include "app/window/Shell.h"

#include <QApplication>
#include <QPalette>
#include <QScreen>
#include <QStyleHints>

#include <stdexcept>

namespace vorle {

namespace {

constexpr QSize usualSize(1180, 780);

bool systemIsDark() {
#if QT_VERSION >= QT_VERSION_CHECK(6, 5, 0)
    return QGuiApplication::styleHints()->colorScheme() == Qt::ColorScheme::Dark;
#else
    const QPalette palette = QGuiApplication::palette();
    return palette.color(QPalette::WindowText).lightness() >
           palette.color(QPalette::Window).lightness();
#endif
}

bool motionIsReduced() {
    return qEnvironmentVariableIsSet("VORLE_REDUCED_MOTION") ||
           !QApplication::isEffectEnabled(Qt::UI_General);
}

} // namespace

MainWindow::MainWindow(Shell &shell, const Typefaces &faces, QString topicsFile, QObject *parent)
    : QObject(parent)
    , m_shell(shell)
    , m_topicsFile(std::move(topicsFile))
    , m_state(WindowState::load(m_topicsFile)) {
    shell.sections()->setCurrent(
        static_cast<Section>(std::clamp(m_state.section, 0, sectionCount - 1)));
    m_engine.addImportPath(QStringLiteral("qrc:/qt/qml"));
    m_engine.setInitialProperties({{QStringLiteral("shell"), QVariant::fromValue(&shell)},
                                   {QStringLiteral("displayFamily"), faces.display},
                                   {QStringLiteral("textFamily"), faces.text}});
    m_engine.load(QUrl(QStringLiteral("qrc:/qt/qml/Vorle/screens/Main.qml")));
    if (m_engine.rootObjects().isEmpty()) {
        throw std::runtime_error("the main window could not be loaded");
    }
    m_window = qobject_cast<QQuickWindow *>(m_engine.rootObjects().first());
    QList<QRect> screens;
    for (const QScreen *screen : QGuiApplication::screens()) {
        screens += screen->availableGeometry();
    }
    m_window->setGeometry(onScreen(m_state.place(), usualSize, screens));
    m_window->installEventFilter(this);
    connect(m_window, SIGNAL(quitAsked()), this, SIGNAL(quitAsked()));
    connect(m_window, SIGNAL(raiseAsked()), this, SLOT(raise()));
    followSystem();
}

MainWindow::~MainWindow() = default;

void MainWindow::raise() {
    m_window->show();
    m_window->raise();
    m_window->requestActivate();
}

void MainWindow::perform(KeyboardMap::Action action) {
    raise();
    QMetaObject::invokeMethod(m_window, "perform", Q_ARG(int, static_cast<int>(action)));
}

void MainWindow::keepPlace() {
    if (m_window->visibility() == QWindow::Windowed) {
        m_state.setPlace(m_window->geometry());
    }
    m_state.section = static_cast<int>(m_shell.sections()->current());
    m_state.save(m_topicsFile);
}

bool MainWindow::eventFilter(QObject *watched, QEvent *event) {
    if (watched == m_window && event->type() == QEvent::Close) {
        keepPlace();
        event->ignore();
        Q_EMIT closed();
        return true;
    }
    if (event->type() == QEvent::ApplicationPaletteChange || event->type() == QEvent::ThemeChange) {
        followSystem();
    }
    return QObject::eventFilter(watched, event);
}

void MainWindow::followSystem() {
    m_window->setProperty("systemDark", systemIsDark());
    m_window->setProperty("reducedMotion", motionIsReduced());
}

} // namespace vorle
