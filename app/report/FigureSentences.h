#pragma once

#include "app/report/WatchFigures.h"

#include <QString>

namespace vorle {

/// What the figures say, a sentence each, in French: each is chosen by rule, and says so where
/// there is too little to tell. Pure functions, any thread.

/// How much was found, kept and done: by week over four weeks, by month over a year.
QString foundSentence(const WatchFigures &figures);
/// The time done against the time given.
QString timeSentence(const WatchFigures &figures);
/// How scores and choices went together.
QString scoresSentence(const WatchFigures &figures);
/// Where what was kept came from.
QString sourcesSentence(const WatchFigures &figures);
/// What the runs took.
QString runsSentence(const WatchFigures &figures);
/// What the user's corrections came to.
QString correctionsSentence(const WatchFigures &figures);
/// Whether scores that reflexes stood behind were better; "" while that is not known.
QString reflexesSentence(const WatchFigures &figures);

/// "128 trouvés · 41 gardés · 23 faits · 56 écartés · 5 pépites"
QString countsText(const WatchFigures &figures);
/// "sur 12 h de veille", after the time done; without a budget "de veille".
QString budgetText(const WatchFigures &figures);
/// "Recherche", "Tes sites", "Jugement", "Pages illisibles".
QString stepName(RunStep step);

} // namespace vorle
