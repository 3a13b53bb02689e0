#pragma once

#include "judging/JudgePrompt.h"
#include "search/SearchScope.h"

#include <QDateTime>
#include <QList>
#include <QString>
#include <QStringList>

namespace vorle {

class Preferences;

/// One scope of a run: what is asked, how much of it, and where its topics will say they came from.
struct PlannedScope {
    QString name; ///< shown while it is searched: the project's name, "a project", or "Tes sujets"
    SearchScope scope;
    CandidatesRequest request;
    Origin origin = Origin::Stack;
    std::optional<QString> project; ///< the watched project, when the scope is one
    QStringList topics;             ///< the declared topics the scope asks for, without weights
};

/// Everything a run is going to ask, worked out from the territory and the topics already held.
struct RunPlan {
    QList<PlannedScope> scopes;
    JudgeProfile profile;
    QStringList warnings; ///< French sentences: a project folder that is gone, a malformed manifest
};

/// Whether there is anything to search: a watched project or a declared topic. Tools, apps and
/// sites alone are context, not a subject.
bool hasTerritory(const Preferences &preferences);

/// "Rien à fouiller : …": what is said when there is no territory.
QString emptyTerritoryText();

/// Plans a run at `now`: a scope for each watched project, then one for the declared topics, tools
/// and apps together. The period starts at the last run, 7 days ago when there was none, and never
/// more than 31 days back. Reads the projects' folders. Main thread.
RunPlan planRun(const Preferences &preferences, const QList<TopicPtr> &topics,
                const QDateTime &now);

/// Every link of the topics, newest topic first, each once.
QStringList knownLinks(const QList<TopicPtr> &topics);

} // namespace vorle
