#pragma once

#include "platform/GlobalHotKey.h"

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QObject>
#include <QSocketNotifier>

#include <memory>

struct xcb_connection_t;
struct xcb_key_press_event_t;

namespace vorle {

/// A passive grab of the key on every screen of an X server, over a connection of its own.
///
/// The key is the one that types what was recorded, wherever the layout in use has it; where it has
/// it nowhere, the one in the recorded place. When the layout changes, the key is looked for again.
/// Locks (Caps Lock, Num Lock) make no difference. The person is taken to speak by it: before it is
/// told, the program's windows know of the moment, so that the window manager lets them come
/// forward.
class X11HotKey final : public QObject, public GlobalHotKey {
    Q_OBJECT
public:
    /// On that display; empty: on the one the environment names.
    explicit X11HotKey(const QByteArray &display = {});
    ~X11HotKey() override;

    void replace(const std::optional<KeyCombination> &combination) override;
    State state() const override { return m_state; }
    void follow(std::function<void()> pressed, std::function<void()> changed) override;

private:
    struct Layout;
    struct Grab {
        quint32 root;
        quint8 key;
        quint16 modifiers;
    };

    Layout layout() const;
    void grab();
    void release();
    void turn(State state);
    void read();
    void take(const xcb_key_press_event_t &press);
    void tellWindows(quint32 time) const;

    std::unique_ptr<xcb_connection_t, void (*)(xcb_connection_t *)> m_server;
    std::unique_ptr<QSocketNotifier> m_arrivals;
    QList<Grab> m_grabs;
    QHash<quint8, quint32> m_released; // when, by key
    std::optional<KeyCombination> m_wanted;
    State m_state = State::None;
    bool m_layoutChanged = false;
    std::function<void()> m_pressed;
    std::function<void()> m_changed;
};

} // namespace vorle
