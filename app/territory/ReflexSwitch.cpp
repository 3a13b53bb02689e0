#include "app/territory/ReflexSwitch.h"

namespace vorle {

bool isReflexOn(const Settings &settings, const QString &id) {
    return !settings.disabledReflexes.contains(id);
}

void setReflexOn(Preferences &preferences, const QString &id, bool on) {
    auto off = preferences.settings().disabledReflexes;
    off.removeAll(id);
    if (!on) {
        off += id;
    }
    preferences.change(&Settings::disabledReflexes, off);
}

void startLearningAgain(Preferences &preferences, const QDateTime &now) {
    preferences.change(&Settings::reflexesSince, now);
}

} // namespace vorle
