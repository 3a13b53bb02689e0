#pragma once

#include "app/window/Gui.h"

#include <QObject>

namespace vorle {

class LoginItem;
class MainWindow;
class Tray;

/// Opens the app the way it was asked for: with its window, or hidden in the menu bar. Main thread;
/// what it is given outlives it.
class Entering final : public QObject {
    Q_OBJECT
public:
    Entering(MainWindow &window, Tray &tray, const LoginItem &login)
        : m_window(window), m_tray(tray), m_login(login) {}

    void enter(Entrance entrance);

private:
    void stayHidden(int looks);

    MainWindow &m_window;
    Tray &m_tray;
    const LoginItem &m_login;
};

} // namespace vorle
