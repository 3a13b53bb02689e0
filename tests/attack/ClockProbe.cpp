#include "app/wiring/RunTimer.h"
#include "tests/attack/Probe.h"

#include <QJsonArray>
#include <QTemporaryDir>

#include <algorithm>
#include <memory>

namespace vorle::attack {

namespace {

class StoryClock final : public Clock {
public:
    QDateTime now() const override { return QDateTime::fromSecsSinceEpoch(moment, Qt::UTC); }
    qint64 moment = 0;
};

/// The app's timer, living through the story without waiting for it.
class Story {
public:
    explicit Story(const QJsonObject &told)
        : m_late(told.value(QStringLiteral("late")).toDouble())
        , m_runSeconds(told.value(QStringLiteral("runSeconds")).toInt())
        , m_takesOffers(told.value(QStringLiteral("takesOffers")).toBool())
        , m_zone(told.value(QStringLiteral("zone")).toString().toLatin1())
        , m_preferences(
              std::make_unique<SettingsFile>(m_folder.filePath(QStringLiteral("settings.json")))) {
        Schedule schedule;
        schedule.weekdays.clear();
        for (const QJsonValue &day : told.value(QStringLiteral("weekdays")).toArray()) {
            schedule.weekdays += day.toInt();
        }
        schedule.hour = told.value(QStringLiteral("hour")).toInt();
        schedule.minute = told.value(QStringLiteral("minute")).toInt();
        m_preferences.change(&Settings::schedule, schedule);
        m_clock.moment = told.value(QStringLiteral("start")).toInteger();
        if (m_takesOffers) { // before a first run nothing is offered
            m_preferences.change(&Settings::lastSearch, m_clock.now());
        }
        restart();
    }

    void live(const QJsonObject &step) {
        const auto seconds = [&](const char *key) {
            return step.value(QLatin1StringView(key)).toInteger();
        };
        if (step.contains(QStringLiteral("pass"))) {
            pass(seconds("pass"));
        } else if (step.contains(QStringLiteral("set"))) {
            m_clock.moment += seconds("set");
        } else if (step.contains(QStringLiteral("sleep"))) {
            m_clock.moment += seconds("sleep"); // timers stand still
            m_timer->look();                    // the app comes to the front again
            offer();
        } else if (step.contains(QStringLiteral("zone"))) {
            m_zone = QTimeZone(step.value(QStringLiteral("zone")).toString().toLatin1());
        } else {
            restart();
        }
    }

    const QJsonArray &due() const { return m_due; }
    const QJsonArray &offered() const { return m_offered; }

private:
    void restart() {
        m_timer = std::make_unique<RunTimer>(m_preferences, m_clock,
                                             LocalZone([this] { return m_zone; }));
        QObject::connect(m_timer.get(), &RunTimer::due, m_timer.get(), [this] {
            m_due.append(m_clock.moment);
            m_runEnds = m_runSeconds; // none: the run fails, and leaves the last one's date alone
        });
        m_left = wait();
    }

    /// Until the timer looks again: a coarse one may be late.
    qint64 wait() const {
        const auto exact = static_cast<double>(m_timer->wait().count()) / 1000.0;
        return static_cast<qint64>(exact * (1 + m_late)) + 1;
    }

    void pass(qint64 seconds) {
        while (seconds > 0) {
            const qint64 next = m_runEnds > 0 ? std::min(m_runEnds, m_left) : m_left;
            const qint64 step = std::min(next, seconds);
            m_clock.moment += step;
            seconds -= step;
            m_left -= step;
            if (m_runEnds > 0 && (m_runEnds -= step) == 0) {
                leaveDate();
                m_left = std::min(m_left, wait());
            }
            if (m_left == 0) {
                m_timer->look();
                offer();
                m_left = wait();
            }
        }
    }

    /// As a run does at its end.
    void leaveDate() {
        m_preferences.change(&Settings::servedSlot,
                             m_preferences.settings().schedule.slotAt(m_clock.now(), m_zone));
        m_preferences.change(&Settings::lastSearch, m_clock.now());
    }

    /// The banner of a missed run, where the story has somebody who takes it up at once.
    void offer() {
        const Settings &settings = m_preferences.settings();
        const auto missed = settings.schedule.missedRun(settings.lastSearch, m_clock.now(), m_zone,
                                                        settings.believedSlot(m_clock.now()));
        if (m_takesOffers && m_runEnds == 0 && missed) {
            m_offered.append(missed->toSecsSinceEpoch());
            leaveDate();
        }
    }

    double m_late;
    qint64 m_runSeconds;
    bool m_takesOffers;
    QTimeZone m_zone;
    QTemporaryDir m_folder;
    Preferences m_preferences;
    StoryClock m_clock;
    std::unique_ptr<RunTimer> m_timer;
    QJsonArray m_due;
    QJsonArray m_offered;
    qint64 m_left = 0;
    qint64 m_runEnds = 0;
};

} // namespace

QJsonObject timed(const QJsonObject &question) {
    Story story(question);
    for (const QJsonValue &step : question.value(QStringLiteral("steps")).toArray()) {
        story.live(step.toObject());
    }
    return {{QStringLiteral("due"), story.due()}, {QStringLiteral("offered"), story.offered()}};
}

} // namespace vorle::attack
