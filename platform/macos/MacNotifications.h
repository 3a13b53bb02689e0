#pragma once

#include "platform/Notifications.h"

#include <memory>

namespace vorle {

/// UNUserNotificationCenter. It keeps the weekly reminder itself, and asks the person once. A
/// program outside of a bundle has no such centre: nothing shows notifications then.
class MacNotifications final : public Notifications {
public:
    MacNotifications();
    ~MacNotifications() override;
    MacNotifications(const MacNotifications &) = delete;
    MacNotifications &operator=(const MacNotifications &) = delete;

    void follow(Events events) override;
    void registerCategories(const QList<NotificationCategory> &categories) override;
    Standing standing() const override;
    void look() override;
    void authorise() override;
    QString remedy() const override;
    void post(const Notification &notification) override;
    bool keepsTime() const override { return true; }
    void schedule(const Notification &notification, const WeeklyMoment &moment) override;
    void withdrawScheduled(const QString &identifier) override;

    struct State; ///< shared with the answers under way, which may come after the end

private:
    std::shared_ptr<State> m_state;
};

} // namespace vorle
