#include "app/window/items/Press.h"

#include <QFocusEvent>
#include <QHoverEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPointingDevice>

#include <utility>

namespace vorle {

namespace {

/// With another key it is a shortcut, and none of a button's.
bool isBare(const QKeyEvent &event) { return (event.modifiers() & ~Qt::KeypadModifier) == 0; }

} // namespace

Press::Press(QQuickItem *parent) : QQuickItem(parent) {
    setAcceptedMouseButtons(Qt::LeftButton);
    setAcceptHoverEvents(true);
    setActiveFocusOnTab(true);
}

void Press::setText(const QString &text) {
    if (text != m_text) {
        m_text = text;
        Q_EMIT textChanged();
    }
}

void Press::setKeys(const QString &keys) {
    if (keys != m_keys) {
        m_keys = keys;
        Q_EMIT keysChanged();
    }
}

void Press::set(bool &member, bool value, void (Press::*changed)()) {
    if (std::exchange(member, value) != value) {
        Q_EMIT(this->*changed)();
    }
}

void Press::callOff() {
    m_byMouse = false;
    m_bySpace = false;
    setKeepMouseGrab(false);
    set(m_down, false, &Press::downChanged);
}

void Press::mousePressEvent(QMouseEvent *event) {
    m_byMouse = true;
    // A list moves under a finger that began on a button, and stays where it is under the mouse.
    setKeepMouseGrab(event->pointingDevice()->type() != QInputDevice::DeviceType::TouchScreen);
    set(m_down, true, &Press::downChanged);
    event->accept();
}

void Press::mouseMoveEvent(QMouseEvent *event) {
    set(m_down, m_byMouse && contains(event->position()), &Press::downChanged);
    event->accept();
}

void Press::mouseReleaseEvent(QMouseEvent *event) {
    const bool pressed = m_byMouse && contains(event->position());
    callOff();
    event->accept();
    if (pressed) {
        Q_EMIT clicked(); // may end this
    }
}

void Press::mouseDoubleClickEvent(QMouseEvent *event) { event->accept(); }

void Press::mouseUngrabEvent() { callOff(); }

// Left to others too: a card is under the mouse where one of its buttons is.
void Press::hoverEnterEvent(QHoverEvent *event) {
    set(m_hovered, true, &Press::hoveredChanged);
    event->ignore();
}

void Press::hoverLeaveEvent(QHoverEvent *event) {
    set(m_hovered, false, &Press::hoveredChanged);
    event->ignore();
}

void Press::keyPressEvent(QKeyEvent *event) {
    if (!isVisible()) { // the keyboard stays on what is hidden
        event->ignore();
        return;
    }
    const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (event->key() == Qt::Key_Space && isBare(*event)) {
        event->accept(); // held down it is one press
        if (!event->isAutoRepeat()) {
            m_bySpace = true;
            set(m_down, true, &Press::downChanged);
        }
    } else if (isReturn && m_takesReturn && isBare(*event) && !event->isAutoRepeat()) {
        event->accept();
        Q_EMIT clicked();
    } else {
        event->ignore();
    }
}

void Press::keyReleaseEvent(QKeyEvent *event) {
    if (event->key() != Qt::Key_Space || !m_bySpace) {
        event->ignore();
        return;
    }
    event->accept();
    if (!event->isAutoRepeat()) {
        callOff();
        Q_EMIT clicked();
    }
}

void Press::focusInEvent(QFocusEvent *event) {
    QQuickItem::focusInEvent(event);
    const Qt::FocusReason reason = event->reason();
    if (reason != Qt::ActiveWindowFocusReason) { // else it is as it was when the window was left
        m_byKeys = reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason ||
                   reason == Qt::ShortcutFocusReason;
    }
    set(m_visualFocus, m_byKeys, &Press::visualFocusChanged);
}

void Press::focusOutEvent(QFocusEvent *event) {
    QQuickItem::focusOutEvent(event);
    if (m_bySpace) {
        callOff();
    }
    set(m_visualFocus, false, &Press::visualFocusChanged);
}

void Press::itemChange(ItemChange change, const ItemChangeData &value) {
    if ((change == ItemVisibleHasChanged || change == ItemEnabledHasChanged) && !value.boolValue) {
        callOff();
        set(m_hovered, false, &Press::hoveredChanged);
    }
    QQuickItem::itemChange(change, value);
}

} // namespace vorle
