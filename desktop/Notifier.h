#pragma once

#include "base/Async.h"
#include "base/Clock.h"
#include "base/LocalZone.h"
#include "core/Preferences.h"
#include "platform/Notifications.h"

#include <QMap>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QTimer>

#include <chrono>
#include <memory>
#include <optional>

namespace vorle {

class TemporaryFile;

/// What a run brought, as a notification tells it.
struct TopicsReady {
    int count = 0;            ///< topics that it brought and that wait to be sorted
    bool others = false;      ///< other topics waited already
    bool urgent = false;      ///< one of them is
    QString title;            ///< of the best one
    std::optional<int> score; ///< of that one; nothing where it could not be read
};

/// Decides which notification is sent, and what it says: topics wait to be sorted, a run failed,
/// and once a week kept topics still wait in the program. A tap asks for the section it names.
///
/// After a run the user's mode decides: "Jamais" sends nothing; "Seulement si urgent" what brought
/// something urgent; "À chaque fouille" whatever brought something. A run that failed is told in
/// both, since nothing came that could be waited for. The weekly reminder has its own switch; it
/// comes on Thursdays, a day before the week-end, at the hour that the user chose, again each week
/// while topics wait. Where the system keeps no time it comes while the app is open, up to `late`
/// after its hour for a machine that slept.
///
/// The person is asked for their leave where the system wants it, and only when something is to be
/// sent or they turned a switch themselves; what was to be sent then waits for the answer. A
/// reminder that the system did not take is asked for again. Strangers' texts are held to a line.
/// Main thread, which draws and writes nothing; needs a QGuiApplication; what it is given outlives
/// it.
class Notifier final : public QObject {
    Q_OBJECT
public:
    struct Parts {
        Notifications &system;
        const Preferences &preferences;
        const Clock &clock;
        QString family; ///< the typeface of the score in the picture
        LocalZone zone = {};
    };

    static constexpr std::chrono::hours late{6};

    explicit Notifier(Parts parts, QObject *parent = nullptr);
    ~Notifier() override;

    /// A run failed as a whole; the error's own text.
    void runFailed(const QString &error);
    /// A run ended that left topics to sort.
    void topicsReady(const TopicsReady &ready);
    /// So many kept topics wait: the reminder that is pending, if any, is replaced; none is while
    /// nothing waits.
    void scheduleWeeklyReminder(int count);
    /// A word about the program itself, where notifications are shown already: nobody is asked for
    /// their leave for it. Whether it was sent.
    bool mention(const QString &title, const QString &text);

    Notifications::Standing standing() const { return m_parts.system.standing(); }
    /// What to tell in the settings of notifications that cannot be shown, and how to mend it; ""
    /// while nothing is known to be wrong.
    QString trouble() const;
    /// Asks the system how things stand, not the person.
    void look() { m_parts.system.look(); }
    /// The person is at these settings: has the system ask them for their leave, where it has not
    /// and something is wanted. Not for what a command sets, which nobody may be looking at.
    void askLeave();
    /// The reminder is wanted, and waits for that.
    bool waitsForLeave() const;
    /// Looks at the clock, as when the machine wakes up.
    void lookAtClock();

Q_SIGNALS:
    /// A notification was tapped: the window is to show that section, by its title.
    void sectionAsked(const QString &section);
    /// `standing` or `trouble` give another answer.
    void standingChanged();

private:
    void send(const Notification &notification);
    void become();
    void follow(const QString &key);
    void plan();
    void arm();
    void takeFailure(const QString &identifier, const QString &words);
    static Task<> sendWithPicture(QPointer<Notifier> self, Notification notification,
                                  std::optional<int> score, int number);

    Parts m_parts;
    QMap<QString, Notification> m_held;       ///< until it is known whether they may be shown
    bool m_mayAsk = false;                    ///< the person, for what is held
    std::shared_ptr<TemporaryFile> m_picture; ///< of the last notification that has one
    int m_pictures = 0; ///< asked for: one that comes after the next was asked for is late
    int m_waiting = 0;  ///< kept topics
    std::optional<Notification> m_reminder; ///< the one that is pending
    bool m_planned = false;                 ///< it was looked at since the start
    WeeklyMoment m_moment;                  ///< when
    QTimer m_timer;                         ///< where the system keeps no time
    QDateTime m_looked;
};

} // namespace vorle
