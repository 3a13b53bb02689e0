#include "app/window/KeyRepeatFilter.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QWindow>

namespace vorle {

KeyRepeatFilter::KeyRepeatFilter(QWindow &window) : QObject(&window) {
    window.installEventFilter(this);
}

/// Nobody lets a key go and presses it again in one millisecond; what a program types may take less
/// than one from press to press, and has not held the key.
bool KeyRepeatFilter::isRepeat(const QKeyEvent &press) const {
    const auto last = m_presses.constFind(press.nativeScanCode());
    return last != m_presses.constEnd() && last->up == press.timestamp() && last->up > last->down;
}

bool KeyRepeatFilter::eventFilter(QObject *watched, QEvent *event) {
    if (event->type() != QEvent::KeyPress && event->type() != QEvent::KeyRelease) {
        return false;
    }
    const auto &key = static_cast<const QKeyEvent &>(*event);
    if (key.timestamp() == 0 || key.nativeScanCode() == 0) {
        return false;
    }
    if (event->type() == QEvent::KeyRelease) {
        m_presses[key.nativeScanCode()].up = key.timestamp();
        return false;
    }
    const bool repeat = !key.isAutoRepeat() && isRepeat(key);
    Press &press = m_presses[key.nativeScanCode()];
    press.down = repeat ? press.down : key.timestamp();
    press.up = 0;
    if (!repeat) {
        return false;
    }
    QKeyEvent held(QEvent::KeyPress, key.key(), key.modifiers(), key.nativeScanCode(),
                   key.nativeVirtualKey(), key.nativeModifiers(), key.text(), true,
                   static_cast<quint16>(key.count()));
    held.setTimestamp(key.timestamp());
    held.setAccepted(false);
    QCoreApplication::sendEvent(watched, &held);
    event->setAccepted(held.isAccepted());
    return true;
}

} // namespace vorle
