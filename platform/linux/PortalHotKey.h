#pragma once

#include "platform/GlobalHotKey.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusServiceWatcher>
#include <QObject>

namespace vorle {

class PortalRequest;

/// The desktop's portal for global shortcuts, the only way there is on Wayland. The desktop may ask
/// the person, who may choose another combination: `boundTo` says which. A session that the desktop
/// closes gives no combination any more, and another is only asked for when somebody asks for it.
/// Never waits for the bus.
class PortalHotKey final : public QObject, public GlobalHotKey {
    Q_OBJECT
public:
    explicit PortalHotKey(const QDBusConnection &bus = QDBusConnection::sessionBus());
    ~PortalHotKey() override;

    void replace(const std::optional<KeyCombination> &combination) override;
    State state() const override { return m_state; }
    QString boundTo() const override { return m_boundTo; }
    void follow(std::function<void()> pressed, std::function<void()> changed) override;

private:
    void open();
    void bind(const QString &session);
    void close();
    void forgetSession();
    void turn(State state);
    void ownerChanged(const QString &before, const QString &now);
    void takeBound(const QVariant &shortcuts);
    Q_SLOT void activated(const QDBusMessage &signal);
    Q_SLOT void shortcutsChanged(const QDBusMessage &signal);
    Q_SLOT void sessionClosed(const QDBusMessage &signal);

    QDBusConnection m_bus;
    QDBusServiceWatcher m_portal;
    std::optional<KeyCombination> m_wanted;
    std::optional<KeyCombination> m_declined; ///< the person said no to it
    QString m_session;
    int m_asked = 0; // answers to an older question come too late
    State m_state = State::None;
    QString m_boundTo;
    std::function<void()> m_pressed;
    std::function<void()> m_changed;
};

/// A combination as the portal wants it: "CTRL+ALT+space". Pure.
QString portalTrigger(const KeyCombination &combination);

} // namespace vorle
