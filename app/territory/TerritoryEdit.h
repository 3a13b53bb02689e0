#pragma once

#include "core/Preferences.h"

#include <functional>
#include <optional>

/// The changes a person makes to their territory, from the window and from the command line: what
/// may be added, under which name, and how what was taken out comes back. Each acts at once, on the
/// settings as they are now, and changes nothing else in them. Main thread.
namespace vorle::territory {

/// Why nothing was changed, as a French sentence; nothing when it was.
using Refusal = std::optional<QString>;

/// Puts back what was taken out, where it stood as far as the list still has that place. What came
/// back meanwhile by another way stays as it is.
using PutBack = std::function<void(Preferences &preferences)>;

/// The most characters a name, a job or an address may have, and a description.
inline constexpr qsizetype maxNameLength = 200;
inline constexpr qsizetype maxDescriptionLength = 2'000;
/// The most trusted sites: all of them are named to the agent in every question.
inline constexpr qsizetype maxSites = 200;

/// A name, a path or an address on one line, without blanks at its ends.
QString oneLine(const QString &text);

// Each of these lists holds a name once, whatever its capitals.
using List = QList<QString> Settings::*;

/// Adds to the interests, the tools or the exclusions. A blank name is refused without a word ("").
Refusal addName(Preferences &preferences, List list, const QString &name);
/// Nothing when the list holds no such name. Of an interest, its weight goes and comes back too.
std::optional<PutBack> removeName(Preferences &preferences, List list, const QString &name);
/// Gives an interest another name and leaves it its weight and its place.
Refusal renameInterest(Preferences &preferences, const QString &from, const QString &to);
/// `weight` is held to 1-5. Nothing happens for a name that is no interest.
void setWeight(Preferences &preferences, const QString &interest, int weight);

/// Whether an app is told to the agent, in the mode that is set.
void setAppInScope(Preferences &preferences, const QString &app, bool inScope);

/// "" takes it away.
Refusal setJob(Preferences &preferences, const QString &job);

/// Follows the folder `path` (absolute, as the disk spells it) under that name. One that is
/// followed under another name is refused.
Refusal addProject(Preferences &preferences, const QString &name, const QString &path);
/// The name under which that folder is followed already, or nothing.
std::optional<QString> projectAt(const Settings &settings, const QString &path);
/// `wanted`, or the first of "wanted 2", "wanted 3" that no project has.
QString freeProjectName(const Settings &settings, const QString &wanted);
/// The project's folder is another one from now on; none that another project has.
Refusal moveProject(Preferences &preferences, const QString &name, const QString &path);
/// With its description. Nothing when there is no such project.
std::optional<PutBack> removeProject(Preferences &preferences, const QString &name);
/// "" takes it away.
Refusal setDescription(Preferences &preferences, const QString &project,
                       const QString &description);

/// What an address names, for telling two spellings of one site apart from two sites: its host and
/// path. Empty for what is no web address.
QString siteKey(const QString &address);
/// Trusts a site, by its address as it was typed.
Refusal addSite(Preferences &preferences, const QString &address);
/// Gives a site another address, to be looked at anew.
Refusal changeSite(Preferences &preferences, const QString &from, const QString &to);
std::optional<PutBack> removeSite(Preferences &preferences, const QString &address);

struct SitesAdded {
    qsizetype added = 0;
    qsizetype known = 0;       ///< trusted already, or twice in the list
    qsizetype refused = 0;     ///< no address that can be followed
    qsizetype beyondLimit = 0; ///< past `maxSites`
    bool operator==(const SitesAdded &) const = default;
};
/// Trusts all of them that can be, in one change.
SitesAdded addSites(Preferences &preferences, const QList<PrioritySite> &sites);

} // namespace vorle::territory
