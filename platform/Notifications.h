#pragma once

#include <QList>
#include <QString>

#include <functional>

namespace vorle {

/// Something to do that is offered with a notification.
struct NotificationAction {
    QString identifier;
    QString label;
    bool operator==(const NotificationAction &) const = default;
};

/// What notifications of one kind have in common.
struct NotificationCategory {
    enum class Weight { Usual, Urgent };

    QString identifier;
    QList<NotificationAction> actions = {};
    Weight weight = Weight::Usual;
};

/// A notice for the user. Its texts are plain: whatever stands in them is shown, never read as
/// markup.
struct Notification {
    enum class Sound { None, Default };

    QString identifier; ///< one of the same identifier takes its place
    QString category;   ///< of those that were registered; "" for none
    QString title;
    QString body;
    QString section; ///< of the app, kept by the system with the notice and given back by a tap
    QString picture; ///< the path of a PNG file that stays as long as the notice; "" for none
    Sound sound = Sound::None;

    bool operator==(const Notification &) const = default;
};

/// What a notice that was acted upon says.
struct NotificationTap {
    QString identifier;
    QString section;
    QString action; ///< of its category's; "" for the notice itself
};

/// A moment that comes back each week, by the clocks of the place.
struct WeeklyMoment {
    int weekday = 5; ///< 1 (Sunday) to 7 (Saturday)
    int hour = 17;
    int minute = 0;
    bool operator==(const WeeklyMoment &) const = default;
};

/// The system's notifications. Nothing waits: what the system answers comes by the events. Main
/// thread.
class Notifications {
public:
    virtual ~Notifications() = default;

    enum class Standing {
        Unknown, ///< not asked yet
        Unasked, ///< the person has not been asked whether they want any
        Granted,
        Refused, ///< by the person
        Absent   ///< nothing here shows notifications
    };
    struct Events {
        std::function<void(const NotificationTap &tap)> tapped;
        /// The standing was asked for, or changed by itself: it is known.
        std::function<void()> known;
        /// A notice could not be added; the system's own words.
        std::function<void(const QString &identifier, const QString &words)> failed;
    };

    /// Whom to tell, until the next call or the end of this object; empty ones stop it. A tap that
    /// opened the program, and came before anybody was there to be told, is told once the event
    /// loop turns.
    virtual void follow(Events events) = 0;
    /// The kinds of notices there will be; before the first one.
    virtual void registerCategories(const QList<NotificationCategory> &categories) = 0;

    /// As last known.
    virtual Standing standing() const = 0;
    /// Asks the system, not the person.
    virtual void look() = 0;
    /// Has the person asked where they have not been; else as look().
    virtual void authorise() = 0;
    /// What the person can do about a refusal or an absence here; "" when nothing is wrong.
    virtual QString remedy() const = 0;

    virtual void post(const Notification &notification) = 0;
    /// Whether schedule() works here. Where it does not, whoever wants a notice later posts it
    /// then.
    virtual bool keepsTime() const = 0;
    /// Has the system post it each week at that moment, with the app closed too.
    virtual void schedule(const Notification &notification, const WeeklyMoment &moment) = 0;
    /// Takes back one that is scheduled.
    virtual void withdrawScheduled(const QString &identifier) = 0;
};

} // namespace vorle
