#include "app/window/Entering.h"

#include "app/window/MainWindow.h"
#include "app/window/Tray.h"
#include "platform/LoginItem.h"

#include <QGuiApplication>
#include <QTimer>

namespace vorle {

namespace {

constexpr int menuLooks = 30; ///< looks for a menu bar, a second apart

} // namespace

void Entering::enter(Entrance entrance) {
    if (entrance == Entrance::Hidden) {
        stayHidden(menuLooks);
    } else if (QGuiApplication::platformName() == u"cocoa") {
        // Who opened it is known once the first event was handled.
        QTimer::singleShot(
            0, this, [this] { m_login.openedThis() ? stayHidden(menuLooks) : m_window.raise(); });
    } else {
        m_window.raise();
    }
}

/// A session's menu bar may come after what it opens; where none comes, the window does: nothing
/// else would show that the app is there.
void Entering::stayHidden(int looks) {
    if (m_tray.show() || m_window.window().isVisible()) {
        return;
    }
    if (looks == 0) {
        m_window.raise();
        return;
    }
    QTimer::singleShot(std::chrono::seconds(1), this, [this, looks] { stayHidden(looks - 1); });
}

} // namespace vorle
