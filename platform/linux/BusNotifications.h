#pragma once

#include "platform/Notifications.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusServiceWatcher>
#include <QHash>
#include <QObject>
#include <QSet>
#include <QStringList>

#include <optional>

namespace vorle {

/// The desktop's notification service (org.freedesktop.Notifications, version 1.2). It asks nobody:
/// where there is a service, running or to be started by the bus, notices may be shown. What the
/// service can do is asked before its first notice, and again of one that took its place: markup is
/// escaped only where it reads markup, actions are given only where it shows them, the text joins
/// the title where it shows titles alone. A tap on a notice of a service that is gone, or of an
/// earlier process, is nobody's.
class BusNotifications final : public QObject, public Notifications {
    Q_OBJECT
public:
    explicit BusNotifications(const QDBusConnection &bus = QDBusConnection::sessionBus());

    void follow(Events events) override { m_events = std::move(events); }
    void registerCategories(const QList<NotificationCategory> &categories) override;
    Standing standing() const override { return m_standing; }
    void look() override;
    void authorise() override { look(); }
    QString remedy() const override;
    void post(const Notification &notification) override;
    bool keepsTime() const override { return false; }
    void schedule(const Notification &, const WeeklyMoment &) override {}
    void withdrawScheduled(const QString &) override {}

private:
    /// A notice as the service knows it.
    struct Shown {
        QString identifier;
        QString section;
    };

    void become(Standing standing);
    void lookAmongActivatable();
    void ownerChanged(const QString &owner);
    void askCapabilities();
    void sendNext();
    void send(const Notification &notification);
    void refuseWaiting(const QString &words);
    void refused(const QString &identifier, const QString &words);
    NotificationCategory categoryOf(const Notification &notification) const;
    Q_SLOT void actionInvoked(const QDBusMessage &signal);
    Q_SLOT void activationGiven(const QDBusMessage &signal);
    Q_SLOT void closed(const QDBusMessage &signal);

    QDBusConnection m_bus;
    QDBusServiceWatcher m_service;
    Events m_events;
    QHash<QString, NotificationCategory> m_categories;
    Standing m_standing = Standing::Unknown;
    std::optional<QSet<QString>> m_capabilities; ///< of the service that runs
    bool m_asking = false;                       ///< for those
    QList<Notification> m_waiting;               ///< until they are known, and for the one before
    bool m_sending = false;
    QHash<uint, Shown> m_shown; ///< by the service's number
    int m_reign = 0; ///< which service it is: an answer of an earlier one counts for nothing
};

} // namespace vorle
