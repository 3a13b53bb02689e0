#pragma once

#include <QJsonObject>

namespace vorle::attack {

/// The part of the program that only a key or a clock reaches, asked from outside: each takes what
/// one line of standard input says, and gives what is printed for it. Main thread.

/// Takes a first step in a terminal, as the window's key does: {project, folder, title, why,
/// firstStep, url}. Gives {error}, empty when a window opened.
QJsonObject launched(const QJsonObject &question);

/// Lets the schedule's timer live through a story told in steps: {zone, start, weekdays, hour,
/// minute, late, runSeconds, steps: [{pass | set | sleep: seconds} | {zone: name} | {restart}]}.
/// Moments are seconds since 1970. Gives {due: [moment, …]}.
QJsonObject timed(const QJsonObject &question);

} // namespace vorle::attack
