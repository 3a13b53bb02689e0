#pragma once

#include "core/TopicOrder.h"

namespace vorle {

/// The week's program: what the user kept, held against the time they give their watch each week.
/// Pure functions, any thread.
///
/// Topics stand in the program's order (see programOrder): urgent ones, then by score and so by
/// tier. Each takes its minutes out of what the week has left:
///
/// - An urgent topic always fits, even past the budget: it cannot wait for next week.
/// - Any other fits when it still has room; when it has none it waits, and shorter ones after it
///   may still fit. Stopping at the first that does not fit would be easier to explain, but one
///   long read at the top would then leave a whole week empty, and one longer than the budget
///   would block everything for ever.
/// - So that this never looks like a mistake, what fits stands together above a line and what
///   waits below it, each side in the program's order; and doing a topic moves nothing over the
///   line, since its minutes go from "planned" to "done".
///
/// Minutes below 0 count as 0; a topic counts for a week at most.
struct WeekProgram {
    enum class State {
        Empty,     ///< nothing kept, and nothing done this week
        AllDone,   ///< nothing left to do, something done this week
        InProgress ///< something to do
    };
    friend constexpr std::array<std::string_view, 3> rawStrings(State) {
        return {"empty", "allDone", "inProgress"};
    }

    QList<TopicPtr> fits;  ///< above the line
    QList<TopicPtr> waits; ///< below it
    State state = State::Empty;
    int budget = 0;  ///< minutes a week
    int done = 0;    ///< minutes of the topics done this week
    int planned = 0; ///< minutes of what fits
    int left = 0;    ///< of the budget once what is done is taken off; never below 0

    /// Minutes by which urgent topics take the week past what it has left; 0 when they do not.
    int excess() const { return planned > left ? planned - left : 0; }
};

/// @param topics         all topics, in the store's order
/// @param weeklyMinutes  the budget; below 0 counts as 0
/// @param week           the present calendar week, see calendarWeek()
WeekProgram weekProgram(const QList<TopicPtr> &topics, int weeklyMinutes, const Period &week);

/// What the program's section says of itself, in French: a title and a sentence.
struct ProgramText {
    QString title;
    QString text;
};

/// @param nextRun  when the next run is due, to stand after "sans attendre": "lundi à 8:00"; empty
///                 when none is scheduled
ProgramText programText(const WeekProgram &program, const QString &nextRun);

/// The words on the line between what fits and what waits.
QString waitingHeading();

} // namespace vorle
