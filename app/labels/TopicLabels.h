#pragma once

#include "core/Topic.h"

#include <QString>

namespace vorle {

/// What people read in the place of the record's words, in French. Pure.
QString kindLabel(const std::optional<QString> &kind);  ///< a word that is no ItemKind as it is
QString readLevelLabel(std::optional<ReadLevel> level); ///< empty where nobody knows
QString statusLabel(TopicStatus status);
/// "2 novembre", "1er décembre"; with its year when it is not today's.
QString dayLabel(const QDate &day, const QDate &today);
/// How long ago that day was: "aujourd’hui", "hier", "il y a 9 jours"; past a month, and for a day
/// to come, as `dayLabel`.
QString agoLabel(const QDate &day, const QDate &today);
/// "avant le 28 novembre" (with its year when it is not this one), "à faire maintenant", or empty.
QString urgencyLabel(const std::optional<Judgment::Urgency> &urgency, const QDate &today);
/// The same as a sentence, with its reason: "À faire maintenant. La faille est exploitée."
QString urgencySentence(const std::optional<Judgment::Urgency> &urgency, const QDate &today);

/// How a topic is named to the program and by it: upper case, without braces.
QString identityText(const QUuid &id);

/// What is said once `count` topics of a run that died were handed out.
QString releasedText(qsizetype count);
/// What is said once `kept` of the entries of a damaged file were taken up.
QString repairedText(qsizetype kept, qsizetype entries);

} // namespace vorle
