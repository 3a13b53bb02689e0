#include "app/cli/Requirements.h"

#include "app/cli/Command.h"
#include "base/French.h"
#include "core/Preferences.h"
#include "core/TopicStore.h"

namespace vorle::cli {

void requireReadable(const TopicStore &store) {
    if (store.isDamaged()) {
        throw Failure(French::tr("Tes sujets sont illisibles\u00A0: %1").arg(store.file()));
    }
}

void requireSaved(TopicStore &store) {
    if (!store.flush()) {
        throw Failure(
            store.saveError().value_or(French::tr("Les sujets n’ont pas pu être enregistrés.")));
    }
}

void requireSaved(Preferences &preferences) {
    if (!preferences.flush()) {
        throw Failure(preferences.writeError().value_or(QString()));
    }
}

} // namespace vorle::cli
