#pragma once

#include "app/labels/Wording.h"
#include "app/territory/TerritoryEdit.h"
#include "base/Clock.h"
#include "base/LocalZone.h"
#include "base/Text.h"
#include "core/Preferences.h"
#include "search/discovery/DiscoveryApps.h"

#include <functional>

namespace vorle {

class Asker;
class Feeds;
class FilePicker;
class TopicStore;

/// What the models of "Ton territoire" work with; all of it outlives them.
struct TerritoryParts {
    Preferences &preferences;
    const TopicStore &store;
    Asker &asker;
    Feeds &feeds;
    FilePicker &files;
    const Clock &clock;
    /// The apps of this machine, in the order they are shown in. Any thread.
    std::function<QList<discovery::App>()> apps = {};
    LocalZone zone = {};
};

/// Takes the news of what was taken out, with how it comes back.
using TellRemoved = std::function<void(const QString &what, territory::PutBack putBack)>;

/// A name, a path or an address that the user or a file gave, on its line.
inline QString shownLine(const QString &words) {
    constexpr qsizetype most = 600;
    return shownWords(clampedLine(words, most));
}

} // namespace vorle
