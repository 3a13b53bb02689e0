#pragma once

#include "core/PrioritySite.h"
#include "core/TopicStore.h"
#include "search/discovery/ProjectSnapshot.h"
#include "search/run/SearchScope.h"

#include <QDateTime>
#include <QList>
#include <QMap>
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
    std::optional<QString> project;  ///< the watched project, when the scope is one with a name
    QStringList topics;              ///< the declared topics the scope asks for, without weights
    QStringList dependencies;        ///< of a code project, as its manifest names them
    QMap<QString, QString> versions; ///< of these, the version in use
    /// Every name of the territory that a candidate may say it is about, other scopes' included:
    /// what it is about is one whole name, never a part of another's.
    QStringList names;
};

/// The trusted sites' part of a run: whose feeds are read, and what fills the instruction that
/// screens their items besides the items themselves.
struct SitesRequest {
    QList<PrioritySite> sites;
    QDate today;
    QStringList projects; ///< each with its description
    QStringList interests;
    QStringList tools;
    QStringList exclusions = {}; ///< sites and folders that are no source
    int count = 8;
    QStringList knownLinks = {}; ///< newest first
    QStringList allKnownLinks =
        {}; ///< every link of a topic, whatever its age: what is not screened again
};

/// Everything a run is going to ask, worked out from the territory and the topics already known.
struct RunPlan {
    QList<PlannedScope> scopes;
    SitesRequest sites;
    QStringList warnings; ///< French sentences: a project folder that is gone, a malformed manifest
};

/// Why a run would ask nothing: there is neither a watched project nor a declared topic (tools,
/// apps and sites alone are context, not a subject), or all there is are projects without a folder
/// and without a description. Empty when a run can start, as far as the settings tell: the disk is
/// not asked. Pure.
QString refusalText(const Preferences &preferences);
/// The same once the folders were asked: one that is gone or does not answer tells nothing.
QString refusalText(const Preferences &preferences, const QList<ProjectSnapshot> &projects);
/// Whether only the folders can tell if there is something to ask.
bool dependsOnFolders(const Preferences &preferences);

/// Where the period of a run at `now` starts: where the last one left it, 7 days ago when there was
/// none, and never more than 31 days back.
QDateTime periodStart(const Settings &settings, const QDateTime &now);
/// The same of a run that takes up what another left, whose period started at `since`, if any did.
QDateTime periodStart(const Settings &settings, const QDateTime &now,
                      const std::optional<QDateTime> &since);

/// Plans a run at `now`: a scope for each watched project, then one for the declared topics, tools
/// and apps together, and the trusted sites. `installedApps` are told as context where the
/// user lets all but some of them be. `earlier` is where the period of a run started whose rest it
/// takes up: see periodStart(). Main thread.
RunPlan planRun(const Preferences &preferences, const QList<ProjectSnapshot> &projects,
                const QList<TopicPtr> &topics, const QDateTime &now,
                const QStringList &installedApps = {},
                const std::optional<QDateTime> &earlier = {});

/// The second search of a declared-topics scope: those of its topics that came back empty.
/// `found` are the links that came back for the others, to be left out too.
PlannedScope secondSearch(const PlannedScope &first, const QStringList &emptyTopics,
                          const QStringList &found);

/// Every link of the topics, newest topic first, each once. With `since`, only those that a search
/// of what was published from that day on may come upon: what was found or published before it is
/// older than anything it looks for.
QStringList knownLinks(const QList<TopicPtr> &topics, const QDate &since = {});

} // namespace vorle
