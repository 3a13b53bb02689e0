#pragma once

#include "app/models/palette/Menus.h"

#include <QMenuBar>
#include <QObject>

namespace vorle {

class Commands;
class MenuTarget;

/// The menus over the screen, where the system has them there: every action and its key. What could
/// do nothing now is shown pale; what does not reach its target has no key either, since a menu
/// takes one from whatever has the keyboard. Main thread; needs a QApplication; what it is given
/// outlives it.
class MenuBar final : public QObject {
    Q_OBJECT
public:
    MenuBar(Commands &commands, MenuTarget &target, QObject *parent = nullptr);

    /// Whether this system puts a program's menus over the screen. Needs a QGuiApplication.
    static bool isWanted();

    QMenuBar &bar() { return m_bar; }

private:
    struct Shown {
        MenuEntry entry;
        QAction *item;
    };

    void build();
    QAction *made(QMenu &menu, const MenuEntry &entry);
    void follow();
    void follow(const Shown &shown) const;

    Commands &m_commands;
    MenuTarget &m_target;
    QList<Shown> m_items;
    QMenuBar m_bar; // without a window of its own it is every window's
};

} // namespace vorle
