#include "desktop/Notifier.h"

#include "agents/TemporaryFiles.h"
#include "base/French.h"
#include "base/FrenchSpacing.h"
#include "base/Log.h"
#include "base/OnDisk.h"
#include "core/NumberText.h"
#include "desktop/ScorePicture.h"
#include "desktop/ShownLine.h"

#include <QBuffer>

#include <algorithm>
#include <system_error>
#include <utility>

namespace vorle {

namespace {

using Standing = Notifications::Standing;

QString inboxSection() { return French::tr("À trier"); }
QString programSection() { return French::tr("Programme"); }

constexpr int thursday = 5;
constexpr qsizetype titleCharacters = 140;
constexpr qsizetype errorCharacters = 300;
/// How far apart two looks at the clock are at most: timers stand still while a machine sleeps.
constexpr std::chrono::milliseconds longestWait = std::chrono::minutes(10);

QList<NotificationCategory> categories() {
    const QList<NotificationAction> sort{{QStringLiteral("sort"), French::tr("Trier maintenant")}};
    return {{.identifier = QStringLiteral("ready"), .actions = sort},
            {.identifier = QStringLiteral("urgent"),
             .actions = sort,
             .weight = NotificationCategory::Weight::Urgent},
            {.identifier = QStringLiteral("problem")}};
}

QString readyTitle(const TopicsReady &ready) {
    if (ready.count == 1) {
        return ready.others ? French::tr("1 autre sujet à trier") : French::tr("1 sujet à trier");
    }
    return numberText(ready.count) +
           (ready.others ? French::tr(" autres sujets à trier") : French::tr(" sujets à trier"));
}

QString reminderBody(int count) {
    const QString end = French::tr(" Un créneau avant le week-end ?");
    return frenchSpacing((count == 1
                              ? French::tr("1 sujet t’attend encore.")
                              : numberText(count) + French::tr(" sujets t’attendent encore.")) +
                         end);
}

/// Any thread. Nothing where it could not be written.
std::shared_ptr<TemporaryFile> pictureFile(std::optional<int> score, Accent accent,
                                           const QString &family) {
    try {
        QBuffer png;
        png.open(QIODevice::WriteOnly);
        scorePicture(score, accent, family).save(&png, "PNG");
        auto file = std::make_shared<TemporaryFile>(u"vorle-score-", u".png");
        file->write(png.data());
        return file;
    } catch (const std::system_error &error) {
        logLine(QStringLiteral("a notification goes without its picture: ") +
                QString::fromLocal8Bit(error.what()));
        return nullptr;
    }
}

} // namespace

Notifier::Notifier(Parts parts, QObject *parent)
    : QObject(parent), m_parts(std::move(parts)), m_looked(m_parts.clock.now()) {
    m_parts.system.follow(
        {.tapped = [this](const NotificationTap &tap) { Q_EMIT sectionAsked(tap.section); },
         .known = [this] { become(); },
         .failed = [this](const QString &identifier,
                          const QString &words) { takeFailure(identifier, words); }});
    m_parts.system.registerCategories(categories());
    m_timer.setSingleShot(true);
    m_timer.setTimerType(Qt::VeryCoarseTimer);
    connect(&m_timer, &QTimer::timeout, this, &Notifier::lookAtClock);
    connect(&m_parts.preferences, &Preferences::changed, this, &Notifier::follow);
    look();
}

Notifier::~Notifier() { m_parts.system.follow({}); }

void Notifier::runFailed(const QString &error) {
    if (m_parts.preferences.settings().notifyMode == NotifyMode::Never) {
        return;
    }
    send({.identifier = QStringLiteral("problem"),
          .category = QStringLiteral("problem"),
          .title = French::tr("Je n’ai pas pu fouiller"),
          .body = shownLine(error, errorCharacters),
          .section = inboxSection(),
          .picture = {},
          .sound = Notification::Sound::Default});
}

void Notifier::topicsReady(const TopicsReady &ready) {
    const NotifyMode mode = m_parts.preferences.settings().notifyMode;
    if (ready.count <= 0 || mode == NotifyMode::Never ||
        (mode == NotifyMode::UrgentOnly && !ready.urgent)) {
        return;
    }
    const QString best = shownLine(ready.title, titleCharacters);
    Notification notification{
        .identifier = QStringLiteral("ready"),
        .category = ready.urgent ? QStringLiteral("urgent") : QStringLiteral("ready"),
        .title = readyTitle(ready),
        .body = ready.urgent ? French::tr("Urgent\u00A0: %1").arg(best) : best,
        .section = inboxSection(),
        .picture = {},
        .sound = Notification::Sound::Default};
    detach(sendWithPicture(this, std::move(notification), ready.score, ++m_pictures),
           QStringLiteral("a notification"));
}

void Notifier::scheduleWeeklyReminder(int count) {
    m_waiting = count;
    plan();
}

QString Notifier::trouble() const { return m_parts.system.remedy(); }

void Notifier::askLeave() {
    const Settings &settings = m_parts.preferences.settings();
    if (settings.notifyReminder || settings.notifyMode != NotifyMode::Never) {
        m_parts.system.authorise();
    }
}

bool Notifier::waitsForLeave() const {
    return standing() == Standing::Unasked && m_parts.preferences.settings().notifyReminder;
}

/// The file of the score's picture stays until the next one or the end: a service may read it late.
/// A notice without its picture is better than none.
Task<> Notifier::sendWithPicture(QPointer<Notifier> self, Notification notification,
                                 std::optional<int> score, int number) {
    auto picture = co_await onDisk(
        [score, accent = self->m_parts.preferences.settings().accent,
         family = self->m_parts.family] { return pictureFile(score, accent, family); });
    if (!self || number != self->m_pictures) {
        co_return; // the one that came since takes its place
    }
    self->m_picture = picture ? std::move(*picture) : nullptr;
    notification.picture = self->m_picture ? self->m_picture->path() : QString();
    self->send(notification);
}

/// What the system keeps no more is wanted still: it is asked for at the next look.
void Notifier::takeFailure(const QString &identifier, const QString &words) {
    logLine(QStringLiteral("the notification ") + identifier + QStringLiteral(" was not taken: ") +
            words);
    if (m_parts.system.keepsTime() && m_reminder && identifier == m_reminder->identifier) {
        m_reminder.reset();
    }
}

void Notifier::send(const Notification &notification) {
    if (standing() == Standing::Granted) {
        m_parts.system.post(notification);
        return;
    }
    m_held.insert(notification.identifier, notification);
    m_mayAsk = standing() != Standing::Unasked;
    m_mayAsk ? look() : m_parts.system.authorise();
}

bool Notifier::mention(const QString &title, const QString &text) {
    if (standing() != Standing::Granted) {
        return false;
    }
    m_parts.system.post({.identifier = QStringLiteral("mention"),
                         .category = {},
                         .title = title,
                         .body = text,
                         .section = {},
                         .picture = {}});
    return true;
}

/// What was held goes out, or is dropped where nothing may be shown.
void Notifier::become() {
    if (standing() == Standing::Unasked) {
        if (std::exchange(m_mayAsk, false)) {
            m_parts.system.authorise();
        }
    } else if (standing() != Standing::Unknown) {
        for (const Notification &each : std::exchange(m_held, {})) {
            if (standing() == Standing::Granted) {
                m_parts.system.post(each);
            } else {
                logLine(QStringLiteral("the notification ") + each.identifier +
                        QStringLiteral(" has nowhere to be shown"));
            }
        }
        if (standing() == Standing::Granted) {
            plan();
        }
    }
    Q_EMIT standingChanged();
}

void Notifier::follow(const QString &key) {
    if (Preferences::isKeyOf(key, &Settings::notifyReminder, &Settings::reminder)) {
        plan();
    }
}

/// Has the reminder that is wanted now pending, and no other. One that stands as it is wanted is
/// left alone: every decision comes by here.
void Notifier::plan() {
    const Settings &settings = m_parts.preferences.settings();
    const WeeklyMoment moment{thursday, settings.reminder.hour, settings.reminder.minute};
    std::optional<Notification> wanted;
    if (settings.notifyReminder && m_waiting > 0) {
        wanted = Notification{.identifier = QStringLiteral("reminder"),
                              .category = {},
                              .title = French::tr("Ton programme de la semaine"),
                              .body = reminderBody(m_waiting),
                              .section = programSection(),
                              .picture = {},
                              .sound = Notification::Sound::None};
    }
    const bool kept = m_parts.system.keepsTime();
    if (kept && wanted && standing() != Standing::Granted) {
        wanted.reset(); // planned once it may be shown
    }
    // The first time, the system may still keep one of an earlier start.
    if (std::exchange(m_planned, true) && wanted == m_reminder && (!wanted || moment == m_moment)) {
        return;
    }
    m_parts.system.withdrawScheduled(QStringLiteral("reminder"));
    if (moment != m_moment || !m_reminder) {
        m_looked = m_parts.clock.now(); // what is past of this week was never waited for
    }
    m_reminder = std::move(wanted);
    m_moment = moment;
    if (kept && m_reminder) {
        m_parts.system.schedule(*m_reminder, m_moment);
    }
    arm();
}

void Notifier::arm() {
    m_timer.stop();
    if (!m_reminder || m_parts.system.keepsTime()) {
        return;
    }
    const QDateTime now = m_parts.clock.now();
    const auto next =
        Schedule{{m_moment.weekday}, m_moment.hour, m_moment.minute}.nextRun(now, m_parts.zone);
    const auto left = std::chrono::milliseconds(next ? now.msecsTo(*next) + 1000 : 0);
    m_timer.start(std::clamp(left, std::chrono::milliseconds(1000), longestWait));
}

void Notifier::lookAtClock() {
    if (m_parts.system.keepsTime()) {
        plan(); // once more, where it was not taken
        return;
    }
    if (!m_reminder) {
        return;
    }
    const QDateTime now = m_parts.clock.now();
    const QDateTime since = now.addSecs(-std::chrono::seconds(late).count());
    const auto due = Schedule{{m_moment.weekday}, m_moment.hour, m_moment.minute}.nextRun(
        std::max(m_looked, since), m_parts.zone);
    m_looked = now;
    if (due && *due <= now) {
        send(*m_reminder);
    }
    arm();
}

} // namespace vorle
