#pragma once

#include "platform/MotionSetting.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusServiceWatcher>
#include <QMap>
#include <QObject>
#include <QVariant>

namespace vorle {

/// Asks the desktop's settings portal, where GNOME, KDE and others say what the user chose, and
/// follows it. Never waits for the bus: the answer comes when it comes, and without a bus or a
/// portal there is none.
///
/// Less motion is asked for by any of: reduced motion as all desktops have it, GTK's animations
/// turned off, KDE's animations set to take no time.
class PortalMotion final : public QObject, public MotionSetting {
    Q_OBJECT
public:
    explicit PortalMotion(const QDBusConnection &bus = QDBusConnection::sessionBus());

    bool isReduced() const override { return m_reduced; }
    void follow(std::function<void()> changed) override { m_changed = std::move(changed); }

private:
    void ask();
    void take(const QString &group, const QString &key, const QVariant &value);
    void conclude();
    Q_SLOT void settingChanged(const QDBusMessage &signal);

    QDBusConnection m_bus;
    QDBusServiceWatcher m_arrivals;
    QMap<QString, bool> m_asked; // by the setting's name
    bool m_reduced = false;
    std::function<void()> m_changed;
};

} // namespace vorle
