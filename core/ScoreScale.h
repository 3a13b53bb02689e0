#pragma once

#include "core/Topic.h"

#include <QString>

#include <compare>
#include <optional>

namespace vorle {

/// How a score is made, banded and drawn. Pure functions, any thread.

/// A ranking band; the first ranks highest, so a smaller value sorts first.
enum class Tier { Urgent, VeryRelevant, Relevant, WorthKnowing, ToDig };

/// The heading a person sees over the band.
QString tierLabel(Tier tier);

/// The band a topic falls into: urgent topics first, then by score from 8, from 6, from 4; what
/// scores less, or could not be read, is left to dig.
Tier tierOf(const Topic &topic);

/// The score cards show: the user's own where it was corrected, to the nearest whole number; else
/// the judge's, and nothing for a topic whose sources could not be read at all.
std::optional<int> shownScore(const Topic &topic);

/// A topic's score from the judge's overall grade: the nearest whole number (halves up), kept in
/// 0-10; 0 for what is no number.
int scoreFromRelevance(double relevance);

/// A colour as text: "#RRGGBB", "rgba(R,G,B,A)" with A from 0 to 1, or `accentToken`, which
/// stands for the accent colour the user chose.
struct ModeColour {
    QString light;
    QString dark;

    bool operator==(const ModeColour &) const = default;
};
inline constexpr QStringView accentToken = u"accent";

/// Rewrites a colour text so that Qt reads it: "rgba(…)" becomes "#AARRGGBB"; any other text is
/// given back unchanged.
QString qtColour(const QString &text);

/// The disc that shows a score.
struct ScoreBadge {
    ModeColour accent;
    ModeColour ink; ///< the digits
    ModeColour fill;
    bool filled = false; ///< a solid disc with light digits, from 9
    bool gem = false;    ///< the top look, from 10
    QString digits;      ///< empty without a score
    QString accessibleName;

    bool operator==(const ScoreBadge &) const = default;
};

/// The badge of a score: cold blue at the bottom, muted in the middle, warm at the top. A score
/// below 0 looks like 0, one above 10 like 10. Without a score: muted and without digits.
ScoreBadge scoreBadge(std::optional<int> score);

} // namespace vorle
