#pragma once

#include "app/models/KeyboardMap.h"
#include "app/models/palette/Menus.h"

#include <QObject>

namespace vorle {

class MainWindow;
class Shell;

/// Where a press of a menu over the screen falls. Menus reach every window of the program at once:
/// what lies under a panel or the first set-up is left alone, as by its key, and nothing is done to
/// a topic while the main window is away or another one of the program is in front. Main thread;
/// what it is given outlives it.
class MenuTarget final : public QObject {
    Q_OBJECT
public:
    MenuTarget(Shell &shell, MainWindow &main, QObject *parent = nullptr);

    /// Whether the action would be done if it were chosen now.
    bool reaches(KeyboardMap::Action action) const;
    bool reaches(WindowCommand command) const;
    /// Does it, where it reaches.
    void choose(KeyboardMap::Action action);
    void choose(WindowCommand command);

Q_SIGNALS:
    /// What is reached may be another.
    void changed();

private:
    Shell &m_shell;
    MainWindow &m_main;
};

} // namespace vorle
