#pragma once

#include "app/models/KeyboardMap.h"

#include <QKeySequence>
#include <QList>
#include <QString>

namespace vorle {

/// What a menu does beside the keyboard map's actions: the system's own.
enum class WindowCommand {
    None,
    About,
    Close,
    Minimize,
    FullScreen,
    Raise,
    Quit,
    Cut,
    Copy,
    Paste,
    SelectAll
};

/// An entry of a menu: an action, a command to the window, or neither, which parts others.
struct MenuEntry {
    KeyboardMap::Action action = KeyboardMap::NoAction;
    WindowCommand command = WindowCommand::None;
    QString text;      ///< with a key that has no ⌘: "Garder au programme (G)"
    QKeySequence keys; ///< that the menu takes itself
    bool isSeparator() const {
        return action == KeyboardMap::NoAction && command == WindowCommand::None;
    }
};

struct Menu {
    QString title;
    QList<MenuEntry> entries;
};

/// The menu bar: every action with a name, under its keys as the keyboard map has them, each once,
/// and what the system expects beside. The first menu is the program's own. Pure.
QList<Menu> menuBar(const KeyboardMap &keyboard);

} // namespace vorle
