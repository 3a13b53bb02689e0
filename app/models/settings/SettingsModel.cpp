#include "app/models/settings/SettingsModel.h"

#include "app/labels/ScheduleText.h"

#include <QMetaMethod>
#include <QMetaProperty>

#include <algorithm>

namespace vorle {

namespace {

template <json::RawEnum E>
QStringList wordsOf() {
    QStringList words;
    for (const std::string_view word : rawStrings(E{})) {
        words += QString::fromUtf8(word.data(), qsizetype(word.size()));
    }
    return words;
}

} // namespace

SettingsModel::SettingsModel(Preferences &preferences, QObject *parent)
    : QObject(parent), m_preferences(preferences) {
    connect(&preferences, &Preferences::changed, this, &SettingsModel::announce);
    connect(&preferences, &Preferences::saveFailed, this, &SettingsModel::tellDisk);
    connect(&preferences, &Preferences::saved, this, [this] { tellDisk({}); });
}

QStringList SettingsModel::appearances() const { return wordsOf<Appearance>(); }
QStringList SettingsModel::accents() const { return wordsOf<Accent>(); }
QStringList SettingsModel::notifyModes() const { return wordsOf<NotifyMode>(); }

QString SettingsModel::problem() const {
    return m_refusal.isEmpty() || m_diskFailure.isEmpty() ? m_refusal + m_diskFailure
                                                          : m_refusal + u'\n' + m_diskFailure;
}

QList<int> SettingsModel::weekdays() const {
    QList<int> days = now().schedule.weekdays;
    std::ranges::sort(days);
    days.erase(std::unique(days.begin(), days.end()), days.end());
    return days;
}

void SettingsModel::setWeekdays(const QList<int> &days) {
    Schedule schedule = now().schedule;
    schedule.weekdays = days;
    if (schedule != now().schedule) {
        set(&Settings::schedule, schedule);
    }
}

QString SettingsModel::runTime() const {
    return timeOfDayText({now().schedule.hour, now().schedule.minute});
}

/// What is no time is told.
std::optional<TimeOfDay> SettingsModel::timeOf(const QString &text) {
    const auto time = parsedTime(text);
    if (!time) {
        tellRefusal(tr("Ce n’est pas une heure\u00A0: «\u202F%1\u202F». Écris par exemple 8:30.")
                        .arg(text.left(20)));
    }
    return time;
}

void SettingsModel::setRunTime(const QString &text) {
    const auto time = timeOf(text);
    if (!time) {
        return;
    }
    Schedule schedule = now().schedule;
    schedule.hour = time->hour;
    schedule.minute = time->minute;
    set(&Settings::schedule, schedule);
}

QString SettingsModel::reminder() const { return timeOfDayText(now().reminder); }

void SettingsModel::setReminder(const QString &text) {
    if (const auto time = timeOf(text)) {
        set(&Settings::reminder, *time);
    }
}

QString SettingsModel::scheduleText() const { return vorle::scheduleText(now().schedule); }

bool SettingsModel::isTime(const QString &text) { return parsedTime(text).has_value(); }

QString SettingsModel::laterTime(const QString &time, int minutes) {
    const TimeOfDay from = parsedTime(time).value_or(TimeOfDay{0, 0});
    constexpr int day = 24 * 60;
    const int to = ((from.hour * 60 + from.minute + minutes) % day + day) % day;
    return timeOfDayText({to / 60, to % 60});
}

/// A property has its setting's key for a name, save the schedule's, which has several.
void SettingsModel::announce(const QString &key) {
    if (Preferences::isKeyOf(key, &Settings::schedule)) {
        Q_EMIT scheduleChanged();
        return;
    }
    const int index = staticMetaObject.indexOfProperty(key.toLatin1().constData());
    if (index >= 0) {
        staticMetaObject.property(index).notifySignal().invoke(this, Qt::DirectConnection);
    }
}

void SettingsModel::tellRefusal(const std::optional<QString> &refusal) {
    const QString text = refusal.value_or(QString());
    if (!text.isEmpty() || !m_refusal.isEmpty()) {
        m_refusal = text;
        Q_EMIT problemChanged();
    }
}

void SettingsModel::tellDisk(const QString &failure) {
    m_diskFailure = failure;
    Q_EMIT problemChanged();
}

} // namespace vorle
