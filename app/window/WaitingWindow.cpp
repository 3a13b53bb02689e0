#include "app/window/WaitingWindow.h"

#include "app/window/MainWindow.h"

#include <QGuiApplication>
#include <QScreen>

namespace vorle {

WaitingWindow::WaitingWindow(Preferences &preferences, const Typefaces &faces,
                             const QString &sentence)
    : m_settings(preferences) {
    m_look = m_engine.made(QStringLiteral("theme/Look.qml"),
                           {{QStringLiteral("settings"), QVariant::fromValue(&m_settings)},
                            {QStringLiteral("systemDark"), MainWindow::systemIsDark()},
                            {QStringLiteral("reducedMotion"), true}, // it stays for moments
                            {QStringLiteral("displayFamily"), faces.display},
                            {QStringLiteral("textFamily"), faces.text}});
    m_screen = m_engine.made(QStringLiteral("screens/WaitingScreen.qml"),
                             {{QStringLiteral("sentence"), sentence}});
    m_window = qobject_cast<QQuickWindow *>(m_screen.get());
    connect(m_window, SIGNAL(givenUp()), this, SIGNAL(givenUp()));
    if (const QScreen *screen = QGuiApplication::primaryScreen()) {
        const QRect free = screen->availableGeometry();
        m_window->setPosition(free.center() - QRect(QPoint(), m_window->size()).center());
    }
    raise();
}

WaitingWindow::~WaitingWindow() = default;

void WaitingWindow::setSentence(const QString &sentence) {
    m_window->setProperty("sentence", sentence);
}

void WaitingWindow::raise() {
    m_window->show();
    m_window->raise();
    m_window->requestActivate();
}

} // namespace vorle
