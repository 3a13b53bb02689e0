#pragma once

#include "core/RunReport.h"
#include "core/Settings.h"

#include <QDateTime>
#include <QString>
#include <QStringList>
#include <QTimeZone>

namespace vorle {

/// How runs are said, in French, by the window and the terminal alike. What sites and the agent
/// wrote stands in these as it came: whoever shows it passes it through shownWords(). Pure
/// functions, any thread.

/// What a run that ended came to: "3 nouveaux sujets dans « À trier »."
QString runResultText(const RunReport &report);
/// "12 liens trouvés · 8 pages lues · 1 min 12 s · 0,50 $", the cost where it is known, else the
/// tokens.
QString runFactsText(const RunReport &report);
/// The scope's name; that of a second search says so.
QString scopeName(const ScopeReport &scope);
/// "12 liens", or why it failed.
QString scopeText(const ScopeReport &scope);
/// What became of some of its links: "3 déjà connus, 1 en double, 1 illisible comme adresse"; ""
/// when none was left out.
QString scopeRemark(const ScopeReport &scope);
/// How far pages could be read: "Pages : 33 en entier, 3 illisibles, dont 1 retrouvée ailleurs.";
/// "" when none was tried.
QString pagesText(const RunReport &report);
/// In a word, what was wrong with the run: "a échoué", "arrêtée par toi", "Potager : pas de
/// réponse"; "" for nothing.
QString problemText(const RunReport &report);
/// What else the report has to tell, a line each: why it failed, warnings, sites in trouble, links
/// set aside or not judged, scopes without anything.
QStringList runNotices(const RunReport &report);

/// The line over a run that waits: "Claude Code a atteint sa limite."
QString waitsTitle(const RunWaits &waits);
/// Below it: when it goes on, or should have, and what is left of it.
QString waitsText(const RunWaits &waits, const QDateTime &now, const QTimeZone &zone);
/// Why a run that waits does not go on by itself.
enum class PutOff {
    Asked,     ///< it was stopped, or failed, or waits for a word
    Unanswered ///< so many parts had no answer
};
/// The same of one that goes on when the user says so; with the hour of the limit while that is to
/// come.
QString putOffText(const RunWaits &waits, PutOff why, const QDateTime &now, const QTimeZone &zone);
/// What is kept of it: "Je garde tout : il reste 2 liens à juger."
QString keptRestText(const RunWaits &waits);
/// In a few words: "La suite aujourd’hui à 13:00", "La suite quand tu veux".
QString comingRestText(const RunWaits &waits, const QDateTime &now, const QTimeZone &zone);

/// What calls took: "3 appels · 42 s · 0,05 $", with the tokens in the place of an unknown cost.
QString spentText(int calls, double seconds, double costUSD,
                  const std::optional<qint64> &tokens = {});
/// The same of a run under way.
QString spentText(const RunProgress &progress);
/// "42 s", "2 min", "1 min 12 s".
QString secondsText(double seconds);
/// "0,50 $"
QString costText(double usd);

/// When the next scheduled run is due, see comingText(); "" when none is.
QString nextRunText(const Settings &settings, const QDateTime &now, const QTimeZone &zone);

} // namespace vorle
