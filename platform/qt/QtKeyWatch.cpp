#include "platform/qt/QtKeyWatch.h"

#include "platform/KeyCodes.h"

#include <QGuiApplication>
#include <QKeyEvent>

#include <string_view>

namespace vorle {

namespace {

/// The window systems of Linux count keys as the event devices do, and 8 more.
constexpr int placeOffset = 8;

bool isModifier(int key) {
    switch (key) {
    case Qt::Key_Shift:
    case Qt::Key_Control:
    case Qt::Key_Alt:
    case Qt::Key_AltGr:
    case Qt::Key_Meta:
    case Qt::Key_Super_L:
    case Qt::Key_Super_R:
    case Qt::Key_Hyper_L:
    case Qt::Key_Hyper_R:
    case Qt::Key_CapsLock:
    case Qt::Key_NumLock:
    case Qt::Key_ScrollLock:
    case Qt::Key_unknown:
        return true;
    default:
        return key >= Qt::Key_Multi_key && key <= Qt::Key_PreviousCandidate; // input methods' own
    }
}

/// Where a key lies that was sent without its place: as on an American keyboard.
int usualPlace(int key) {
    struct Named {
        int key;
        int onLinux;
    };
    constexpr Named named[] = {
        {Qt::Key_Escape, 1},     {Qt::Key_Backspace, 14}, {Qt::Key_Tab, 15},  {Qt::Key_Return, 28},
        {Qt::Key_Space, 57},     {Qt::Key_Home, 102},     {Qt::Key_Up, 103},  {Qt::Key_PageUp, 104},
        {Qt::Key_Left, 105},     {Qt::Key_Right, 106},    {Qt::Key_End, 107}, {Qt::Key_Down, 108},
        {Qt::Key_PageDown, 109}, {Qt::Key_Delete, 111}};
    for (const Named &each : named) {
        if (each.key == key) {
            return each.onLinux;
        }
    }
    constexpr std::string_view rows[] = {"1234567890-=", "QWERTYUIOP[]", "ASDFGHJKL;'`",
                                         "ZXCVBNM,./"};
    constexpr int starts[] = {2, 16, 30, 44};
    for (int row = 0; row < 4; ++row) {
        const auto at =
            key < 0x80 ? rows[row].find(static_cast<char>(key)) : std::string_view::npos;
        if (at != std::string_view::npos) {
            return starts[row] + static_cast<int>(at);
        }
    }
    return key >= Qt::Key_F1 && key <= Qt::Key_F10 ? 59 + key - Qt::Key_F1 : -1;
}

int carbon(Qt::KeyboardModifiers modifiers) {
    return (modifiers.testFlag(Qt::ControlModifier) ? KeyCombination::control : 0) |
           (modifiers.testFlag(Qt::AltModifier) ? KeyCombination::option : 0) |
           (modifiers.testFlag(Qt::ShiftModifier) ? KeyCombination::shift : 0) |
           (modifiers.testFlag(Qt::MetaModifier) ? KeyCombination::command : 0);
}

} // namespace

KeyCombination combinationOf(const QKeyEvent &event) {
    const int place = event.nativeScanCode() > placeOffset
                          ? static_cast<int>(event.nativeScanCode()) - placeOffset
                          : usualPlace(event.key());
    KeyCombination combination{keys::fromLinux(place), carbon(event.modifiers()), {}};
    combination.key = keys::sign(combination.keyCode);
    constexpr int named = Qt::Key_Escape; // from here on keys have names and type nothing
    if (combination.key.isEmpty() && event.key() > 0 && event.key() < named) {
        const auto letter = static_cast<char32_t>(event.key());
        combination.key = QString::fromUcs4(&letter, 1).toLower();
    }
    if (combination.key.isEmpty()) {
        combination.keyCode = -1;
    }
    return combination;
}

void QtKeyWatch::start(std::function<void(const KeyCombination &)> pressed) {
    if (!m_pressed) {
        QCoreApplication::instance()->installEventFilter(this);
    }
    m_pressed = std::move(pressed);
}

void QtKeyWatch::stop() {
    if (m_pressed) {
        m_pressed = {};
        QCoreApplication::instance()->removeEventFilter(this);
    }
}

bool QtKeyWatch::eventFilter(QObject *watched, QEvent *event) {
    if (event->type() == QEvent::ShortcutOverride) {
        event->accept(); // no shortcut, whoever is asked
        return true;
    }
    const bool isKey = event->type() == QEvent::KeyPress || event->type() == QEvent::KeyRelease;
    if (!isKey || !watched->isWindowType()) {
        return false;
    }
    const auto &key = static_cast<const QKeyEvent &>(*event);
    event->accept();
    if (event->type() == QEvent::KeyPress && !key.isAutoRepeat() && !isModifier(key.key())) {
        const auto pressed = m_pressed; // it may stop this
        pressed(combinationOf(key));
    }
    return true;
}

} // namespace vorle
