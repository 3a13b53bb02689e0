#pragma once

#include "app/models/palette/Menus.h"

#include <QMenuBar>
#include <QObject>

namespace vorle {

class Commands;

/// The menus over the screen, where the system has them there: every action and its key. What could
/// do nothing now is shown pale. Main thread; needs a QApplication; `commands` outlives it.
class MenuBar final : public QObject {
    Q_OBJECT
public:
    explicit MenuBar(Commands &commands, QObject *parent = nullptr);

    /// Whether this system puts a program's menus over the screen. Needs a QGuiApplication.
    static bool isWanted();

    QMenuBar &bar() { return m_bar; }

Q_SIGNALS:
    void actionAsked(vorle::KeyboardMap::Action action);
    void commandAsked(vorle::WindowCommand command);

private:
    void build();
    void follow();

    Commands &m_commands;
    QMenuBar m_bar; // without a window of its own it is every window's
};

} // namespace vorle
