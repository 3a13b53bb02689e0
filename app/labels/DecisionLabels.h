#pragma once

#include "app/triage/DecisionHistory.h"
#include "core/Decision.h"

#include <QString>

namespace vorle {

/// How decisions are said, in French, by the window and the terminal alike. Pure functions, any
/// thread.

/// What happened, and where the topic is now: "Gardé · Programme", "Fait · Bibliothèque".
QString outcomeText(Outcome outcome);
/// What a button that takes the decision says: "Garder", "Plus tard".
QString actionLabel(Outcome outcome);
/// A verdict: "Pépite · Bibliothèque".
QString outcomeText(Worth worth);

/// What taking a step back, or taking it again, came to: "« Vite 8 » revient dans À trier". `topic`
/// as it is now; null where there is none any more.
QString stepText(const StepResult &result, const Topic *topic);

/// "Bof", "Utile", "Pépite".
QString worthLabel(Worth worth);

/// How the reading of a captured link goes.
enum class Reading { UnderWay, Stopped };

/// Why a decision was not taken, and what can be done. `reading` counts for a link that waits.
QString refusalText(Refusal refusal, Reading reading);

} // namespace vorle
