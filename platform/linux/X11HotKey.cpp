#include "platform/linux/X11HotKey.h"

#include "platform/KeyCodes.h"

#include <QGuiApplication>
#include <QWindow>

#include <xcb/xcb.h>

#include <algorithm>
#include <cstdlib>

namespace vorle {

namespace {

// As the X protocol numbers what keys mean.
constexpr xcb_keysym_t numLockSign = 0xFF7F;
constexpr xcb_keysym_t altSigns[] = {0xFFE9, 0xFFEA}; // left, right
constexpr xcb_keysym_t superSigns[] = {0xFFEB, 0xFFEC};
/// A place counts from 0 on the event devices, from 8 in X.
constexpr int placeOffset = 8;

template <class T>
using Answer = std::unique_ptr<T, decltype(&std::free)>;

template <class T>
Answer<T> answer(T *given) {
    return {given, &std::free};
}

/// What X calls the sign a key types; those past Latin-1 go by the recorded place.
xcb_keysym_t signOf(const QString &key) {
    const char16_t code = key.size() == 1 ? key.front().toLower().unicode() : u'\0';
    return code >= 0x20 && code <= 0xFF ? code : XCB_NO_SYMBOL;
}

} // namespace

/// What the keys type, and which keys hold which modifier.
struct X11HotKey::Layout {
    int first = 0;
    int columns = 0;
    QList<xcb_keysym_t> signs;
    quint16 alt = XCB_MOD_MASK_1;
    quint16 super = XCB_MOD_MASK_4;
    quint16 numLock = XCB_MOD_MASK_2;

    int keys() const { return columns == 0 ? 0 : static_cast<int>(signs.size()) / columns; }
    xcb_keysym_t sign(int key, int column) const {
        return column < columns ? signs[qsizetype(key) * columns + column] : XCB_NO_SYMBOL;
    }
    bool types(int key, xcb_keysym_t wanted) const {
        for (int column = 0; column < columns; ++column) {
            if (sign(key, column) == wanted) {
                return true;
            }
        }
        return false;
    }
    /// Alone, with Shift, then in a second layout: the first of these that has the sign.
    QList<quint8> keysTyping(xcb_keysym_t wanted) const {
        QList<quint8> found;
        for (int column = 0; column < columns && wanted != XCB_NO_SYMBOL && found.isEmpty();
             ++column) {
            for (int key = 0; key < keys(); ++key) {
                if (sign(key, column) == wanted) {
                    found += static_cast<quint8>(first + key);
                }
            }
        }
        return found;
    }
    QList<quint8> keysFor(const KeyCombination &combination) const {
        QList<quint8> found = keysTyping(signOf(combination.key));
        const int place = keys::toLinux(combination.keyCode);
        if (found.isEmpty() && place >= 0) {
            found += static_cast<quint8>(place + placeOffset);
        }
        return found;
    }
    quint16 maskOf(int modifiers) const {
        return static_cast<quint16>(
            ((modifiers & KeyCombination::control) != 0 ? XCB_MOD_MASK_CONTROL : 0) |
            ((modifiers & KeyCombination::shift) != 0 ? XCB_MOD_MASK_SHIFT : 0) |
            ((modifiers & KeyCombination::option) != 0 ? alt : 0) |
            ((modifiers & KeyCombination::command) != 0 ? super : 0));
    }
};

X11HotKey::X11HotKey(const QByteArray &display)
    : m_server(xcb_connect(display.isEmpty() ? nullptr : display.constData(), nullptr),
               &xcb_disconnect) {
    if (xcb_connection_has_error(m_server.get()) != 0) {
        m_server.reset();
        return;
    }
    m_arrivals = std::make_unique<QSocketNotifier>(xcb_get_file_descriptor(m_server.get()),
                                                   QSocketNotifier::Read);
    connect(m_arrivals.get(), &QSocketNotifier::activated, this, &X11HotKey::read);
}

X11HotKey::~X11HotKey() = default; // the server gives back what a connection had

void X11HotKey::follow(std::function<void()> pressed, std::function<void()> changed) {
    m_pressed = std::move(pressed);
    m_changed = std::move(changed);
}

void X11HotKey::replace(const std::optional<KeyCombination> &combination) {
    release();
    m_wanted = combination;
    grab();
}

X11HotKey::Layout X11HotKey::layout() const {
    Layout layout;
    xcb_connection_t *server = m_server.get();
    const xcb_setup_t *setup = xcb_get_setup(server);
    layout.first = setup->min_keycode;
    const auto count = static_cast<quint8>(setup->max_keycode - setup->min_keycode + 1);
    const auto askedKeys = xcb_get_keyboard_mapping(server, setup->min_keycode, count);
    const auto askedModifiers = xcb_get_modifier_mapping(server);
    if (const auto keys = answer(xcb_get_keyboard_mapping_reply(server, askedKeys, nullptr))) {
        const xcb_keysym_t *signs = xcb_get_keyboard_mapping_keysyms(keys.get());
        layout.columns = keys->keysyms_per_keycode;
        layout.signs = {signs, signs + xcb_get_keyboard_mapping_keysyms_length(keys.get())};
    }
    const auto held = answer(xcb_get_modifier_mapping_reply(server, askedModifiers, nullptr));
    if (!held) {
        return layout;
    }
    const xcb_keycode_t *holders = xcb_get_modifier_mapping_keycodes(held.get());
    const int each = held->keycodes_per_modifier;
    const auto holder = [&](std::initializer_list<xcb_keysym_t> signs, quint16 usual) {
        for (int modifier = 3; modifier < 8; ++modifier) { // after Shift, Lock and Control
            for (int i = 0; i < each; ++i) {
                const int key = holders[modifier * each + i] - layout.first;
                if (key >= 0 && key < layout.keys() &&
                    std::ranges::any_of(
                        signs, [&](xcb_keysym_t sign) { return layout.types(key, sign); })) {
                    return static_cast<quint16>(1U << modifier);
                }
            }
        }
        return usual;
    };
    layout.alt = holder({altSigns[0], altSigns[1]}, layout.alt);
    layout.super = holder({superSigns[0], superSigns[1]}, layout.super);
    layout.numLock = holder({numLockSign}, layout.numLock);
    return layout;
}

void X11HotKey::grab() {
    if (!m_wanted || !m_server) {
        turn(m_wanted ? State::Unavailable : State::None);
        return;
    }
    const Layout now = layout();
    const quint16 mask = now.maskOf(m_wanted->modifiers);
    const quint16 locks[] = {0, XCB_MOD_MASK_LOCK, now.numLock,
                             static_cast<quint16>(XCB_MOD_MASK_LOCK | now.numLock)};
    struct Request {
        Grab grab;
        xcb_void_cookie_t cookie;
    };
    QList<Request> requests;
    for (auto screen = xcb_setup_roots_iterator(xcb_get_setup(m_server.get())); screen.rem > 0;
         xcb_screen_next(&screen)) {
        for (const quint8 key : now.keysFor(*m_wanted)) {
            for (const quint16 lock : locks) {
                const Grab grab{screen.data->root, key, static_cast<quint16>(mask | lock)};
                requests += {grab, xcb_grab_key_checked(m_server.get(), 0, grab.root,
                                                        grab.modifiers, grab.key,
                                                        XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC)};
            }
        }
    }
    bool taken = false;
    for (const Request &request : requests) {
        if (answer(xcb_request_check(m_server.get(), request.cookie))) {
            taken = true;
        } else {
            m_grabs += request.grab;
        }
    }
    if (taken) {
        release(); // part of it would work with Caps Lock alone, or on one screen
    }
    turn(taken ? State::Taken : m_grabs.isEmpty() ? State::Unavailable : State::Registered);
    // What arrived while it waited for answers wakes nobody any more.
    QMetaObject::invokeMethod(this, &X11HotKey::read, Qt::QueuedConnection);
}

void X11HotKey::release() {
    for (const Grab &grab : std::exchange(m_grabs, {})) {
        xcb_ungrab_key(m_server.get(), grab.key, grab.root, grab.modifiers);
    }
    if (m_server) {
        xcb_flush(m_server.get());
    }
}

void X11HotKey::turn(State state) {
    if (state != m_state) {
        m_state = state;
        if (m_changed) {
            m_changed();
        }
    }
}

void X11HotKey::read() {
    if (!m_server) {
        return;
    }
    while (const auto event = answer(xcb_poll_for_event(m_server.get()))) {
        const int kind = event->response_type & ~0x80; // the bit says who sent it
        if (kind == XCB_KEY_PRESS) {
            take(reinterpret_cast<const xcb_key_press_event_t &>(*event));
        } else if (kind == XCB_KEY_RELEASE) {
            const auto &key = reinterpret_cast<const xcb_key_release_event_t &>(*event);
            m_released[key.detail] = key.time;
        } else if (kind == XCB_MAPPING_NOTIFY && !std::exchange(m_layoutChanged, true)) {
            // One change of the layout is told many times.
            QMetaObject::invokeMethod(
                this,
                [this] {
                    m_layoutChanged = false;
                    release();
                    grab();
                },
                Qt::QueuedConnection);
        }
    }
    if (xcb_connection_has_error(m_server.get()) != 0) {
        m_arrivals.reset();
        m_grabs.clear();
        m_server.reset();
        turn(State::Unavailable);
    }
}

/// A held key repeats itself by releases and presses of one moment.
void X11HotKey::take(const xcb_key_press_event_t &press) {
    const auto released = m_released.constFind(press.detail);
    if (released != m_released.constEnd() && *released == press.time) {
        return;
    }
    tellWindows(press.time);
    if (m_pressed) {
        // Not from here: what it opens may ask for another combination.
        QMetaObject::invokeMethod(
            this,
            [this] {
                if (m_pressed) {
                    m_pressed();
                }
            },
            Qt::QueuedConnection);
    }
}

/// A window manager lets nobody come forward who was not spoken to lately.
void X11HotKey::tellWindows(quint32 time) const {
    if (QGuiApplication::platformName() != u"xcb") {
        return;
    }
    const QByteArray name = QByteArrayLiteral("_NET_WM_USER_TIME");
    const auto asked =
        xcb_intern_atom(m_server.get(), 0, static_cast<quint16>(name.size()), name.constData());
    const auto atom = answer(xcb_intern_atom_reply(m_server.get(), asked, nullptr));
    for (const QWindow *window : QGuiApplication::topLevelWindows()) {
        if (atom && window->handle() != nullptr) {
            xcb_change_property(m_server.get(), XCB_PROP_MODE_REPLACE,
                                static_cast<xcb_window_t>(window->winId()), atom->atom,
                                XCB_ATOM_CARDINAL, 32, 1, &time);
        }
    }
    xcb_flush(m_server.get());
}

} // namespace vorle
