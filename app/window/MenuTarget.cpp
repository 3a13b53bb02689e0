#include "app/window/MenuTarget.h"

#include "app/window/MainWindow.h"
#include "app/window/Shell.h"

#include <QGuiApplication>
#include <QKeyEvent>

namespace vorle {

namespace {

/// What the window in front makes of a key is its own.
void press(QWindow &front, Qt::Key key) {
    for (const auto type : {QEvent::KeyPress, QEvent::KeyRelease}) {
        QKeyEvent event(type, key, Qt::ControlModifier);
        QCoreApplication::sendEvent(&front, &event);
    }
}

} // namespace

MenuTarget::MenuTarget(Shell &shell, MainWindow &main, QObject *parent)
    : QObject(parent), m_shell(shell), m_main(main) {
    connect(&main.window(), SIGNAL(coveredChanged()), this, SIGNAL(changed()));
    connect(&main.window(), &QWindow::visibleChanged, this, &MenuTarget::changed);
    connect(&main.window(), &QWindow::windowStateChanged, this, &MenuTarget::changed);
    connect(qGuiApp, &QGuiApplication::focusWindowChanged, this, &MenuTarget::changed);
}

bool MenuTarget::reaches(KeyboardMap::Action action) const {
    const QWindow *front = QGuiApplication::focusWindow();
    const bool elsewhere = front != nullptr && front != &m_main.window();
    // Nobody sees on what the others would fall.
    const bool away =
        !m_main.window().isVisible() || (m_main.window().windowStates() & Qt::WindowMinimized);
    const bool unseen = away || elsewhere;
    if (unseen && !m_shell.keyboard()->isEverywhere(action) &&
        action != KeyboardMap::SendFeedback && action != KeyboardMap::LookForUpdate) {
        return false;
    }
    bool reached = false;
    QMetaObject::invokeMethod(&m_main.window(), "reaches", Q_RETURN_ARG(bool, reached),
                              Q_ARG(int, static_cast<int>(action)));
    return reached;
}

bool MenuTarget::reaches(WindowCommand command) const {
    switch (command) {
    case WindowCommand::Close:
        return m_main.window().isVisible() || QGuiApplication::focusWindow() != nullptr;
    case WindowCommand::Minimize:
    case WindowCommand::FullScreen:
        return m_main.window().isVisible();
    case WindowCommand::About:
        return reaches(KeyboardMap::OpenSettings);
    default:
        return true;
    }
}

void MenuTarget::choose(KeyboardMap::Action action) {
    if (reaches(action)) {
        m_main.perform(action);
    }
}

void MenuTarget::choose(WindowCommand command) {
    if (!reaches(command)) {
        return;
    }
    QWindow &main = m_main.window();
    QWindow *focused = QGuiApplication::focusWindow();
    QWindow &front = focused != nullptr ? *focused : main;
    switch (command) {
    case WindowCommand::None:
        break;
    case WindowCommand::About: // its version stands there
        m_main.openSettings();
        break;
    case WindowCommand::Close:
        front.close();
        break;
    case WindowCommand::Minimize:
        main.showMinimized();
        break;
    case WindowCommand::FullScreen:
        main.visibility() == QWindow::FullScreen ? main.showNormal() : main.showFullScreen();
        break;
    case WindowCommand::Raise:
        m_main.raise();
        break;
    case WindowCommand::Quit:
        Q_EMIT m_main.quitAsked();
        break;
    case WindowCommand::Cut:
        press(front, Qt::Key_X);
        break;
    case WindowCommand::Copy:
        press(front, Qt::Key_C);
        break;
    case WindowCommand::Paste:
        press(front, Qt::Key_V);
        break;
    case WindowCommand::SelectAll:
        press(front, Qt::Key_A);
        break;
    }
}

} // namespace vorle
