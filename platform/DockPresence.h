#pragma once

namespace vorle {

/// Whether the program stands among those that the system switches between, in its dock and with
/// its menus at the top of the screen. It lives in the menu bar, and does so while it has a window
/// to show. Main thread; needs a QGuiApplication.
class DockPresence {
public:
    virtual ~DockPresence() = default;

    /// From now on. Nothing where the system lists windows in the place of programs.
    virtual void show(bool shown) = 0;
};

} // namespace vorle
