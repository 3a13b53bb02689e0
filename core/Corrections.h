#pragma once

#include "core/Topic.h"

#include <QString>
#include <QStringList>

#include <optional>

namespace vorle {

/// The user's own score of a topic, in the place of the app's. Pure functions, any thread; the
/// store keeps the result (TopicStore::setCorrection).

inline constexpr int maxScore = 10;

/// The reasons offered, in their order: the words that are kept.
const QStringList &correctionReasons();

/// How a reason reads to the user; one that is none of those offered, as it was kept.
QString correctionReasonText(const QString &reason);

/// A correction as it is kept: the score is the nearest whole number in 0-10, since that is what
/// the user then reads (not a number: 0); the offered reasons stand in their order, each once, and
/// any other is left out; blanks around the free text go.
Correction correctionOf(double score, const QStringList &reasons, const QString &text,
                        const QDateTime &now);

/// The score the app gave, whatever the user said of it; nothing when no source could be read.
std::optional<int> judgedScore(const Topic &topic);

/// The score a card shows, and the one it had before.
struct StandingScore {
    std::optional<int> score;  ///< the user's own when they corrected it, else the app's; what the
                               ///< badge is drawn from
    std::optional<int> former; ///< the app's, when the user's is another
    bool operator==(const StandingScore &) const = default;
};
StandingScore standingScore(const Topic &topic);

} // namespace vorle
