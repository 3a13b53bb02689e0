#pragma once

#include <QDateTime>
#include <QString>
#include <QStringList>
#include <QTimeZone>

namespace vorle {

/// How the window words counts and moments, in French. Pure functions, any thread.

/// Words that a page or the agent wrote, as they are shown: without the signs nobody sees, which
/// turn the direction of what follows or hide words, and set as French sets its punctuation.
QString shownWords(const QString &words);

/// A path as it is shown, with "~" for the home.
QString shownPath(const QString &path);

/// "1 sujet", "1 430 sujets": `one` below 2, else `many`, each after the number.
QString counted(qsizetype count, const QString &one, const QString &many);
/// "Aucun sujet", "1 sujet", "12 sujets".
QString countedTopics(qsizetype count);

/// How far from the territory a run looks, from near to far: "Seulement chez toi".
QStringList radiusNames();

/// "8:00"
QString timeText(const QDateTime &moment, const QTimeZone &zone);
/// "lundi 16 novembre", with its year when it is not that of `now`.
QString dayText(const QDateTime &moment, const QDateTime &now, const QTimeZone &zone);
/// A moment to come: "aujourd’hui à 8:00", "demain à 8:00", "lundi à 8:00" within the week,
/// "lundi prochain à 8:00" a week on, else as `dayText`.
QString comingText(const QDateTime &moment, const QDateTime &now, const QTimeZone &zone);
/// A past day: "aujourd’hui", "hier", "lundi" within the week, else "le 2 novembre".
QString pastText(const QDateTime &moment, const QDateTime &now, const QTimeZone &zone);
/// A past day after "la fouille ": "d’aujourd’hui", "d’hier", "de lundi" within the week, else
/// "du 2 novembre".
QString ofDayText(const QDateTime &moment, const QDateTime &now, const QTimeZone &zone);

} // namespace vorle
