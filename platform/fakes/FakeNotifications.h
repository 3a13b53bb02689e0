#pragma once

#include "platform/Notifications.h"

#include <QMap>
#include <QStringList>

#include <utility>

namespace vorle::test {

/// Notifications that a test reads and answers. Like the system's, they ask the person once.
class FakeNotifications final : public Notifications {
public:
    Standing now = Standing::Granted;         ///< what the system says when it is asked
    Standing afterAsking = Standing::Granted; ///< what the person says when they are
    bool keeps = false;
    QList<Notification> posted;
    QMap<QString, std::pair<Notification, WeeklyMoment>> scheduled;
    QList<NotificationCategory> categories;
    int asked = 0; ///< how often the person was
    int withdrawn = 0;

    void follow(Events events) override { m_events = std::move(events); }
    void registerCategories(const QList<NotificationCategory> &all) override { categories = all; }
    Standing standing() const override { return m_standing; }
    void look() override { become(now); }
    void authorise() override {
        if (now == Standing::Unasked) {
            ++asked;
            now = afterAsking;
        }
        become(now);
    }
    QString remedy() const override {
        return m_standing == Standing::Refused || m_standing == Standing::Absent
                   ? QStringLiteral("Mend it there.")
                   : QString();
    }
    void post(const Notification &notification) override { posted += notification; }
    bool keepsTime() const override { return keeps; }
    void schedule(const Notification &notification, const WeeklyMoment &moment) override {
        scheduled[notification.identifier] = {notification, moment};
    }
    void withdrawScheduled(const QString &identifier) override {
        ++withdrawn;
        scheduled.remove(identifier);
    }

    /// What was scheduled is not taken after all.
    void refuse(const QString &identifier) {
        scheduled.remove(identifier);
        if (m_events.failed) {
            m_events.failed(identifier, QStringLiteral("no room"));
        }
    }
    void tap(const NotificationTap &tap) {
        if (m_events.tapped) {
            m_events.tapped(tap);
        }
    }
    void become(Standing standing) {
        now = m_standing = standing;
        if (m_events.known) {
            m_events.known();
        }
    }

private:
    Standing m_standing = Standing::Unknown;
    Events m_events;
};

} // namespace vorle::test
