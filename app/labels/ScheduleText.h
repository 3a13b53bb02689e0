#pragma once

#include "core/Schedule.h"
#include "core/Settings.h"

#include <QString>

#include <optional>

namespace vorle {

/// How the schedule of the runs is said and written, in French, by the window and the terminal
/// alike. Pure functions, any thread.

/// "8:00"
QString timeOfDayText(const TimeOfDay &time);
/// What a person types for a time of day: "8", "8:30", "830", "8h30", "08.30", blanks anywhere.
/// Nothing where it is none.
std::optional<TimeOfDay> parsedTime(const QString &typed);

/// "chaque lundi", "chaque lundi et jeudi", "chaque jour"; "" without a day. From Monday on.
QString daysText(const QList<int> &weekdays);
/// "Ensuite, je fouille seul chaque lundi à 8:00.", or that no run starts by itself.
QString scheduleText(const Schedule &schedule);
/// "Prochaine fouille lundi 23 novembre à 8:00."; "" when none is due.
QString nextRunSentence(const Settings &settings, const QDateTime &now, const QTimeZone &zone);

} // namespace vorle
