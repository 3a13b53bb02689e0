#include "app/cli/Requirements.h"

#include "app/cli/Command.h"
#include "base/French.h"
#include "core/Preferences.h"
#include "core/TopicStore.h"
#include "core/TopicsSaved.h"

namespace vorle::cli {

void requireReadable(const TopicStore &store) {
    if (store.isDamaged()) {
        throw Failure(French::tr("Tes sujets sont illisibles\u00A0: %1").arg(store.file()));
    }
}

namespace {

Failure notSaved(const TopicStore &store) {
    return Failure(
        store.saveError().value_or(French::tr("Les sujets n’ont pas pu être enregistrés.")));
}

} // namespace

Task<> onceSaved(Context &context, TopicStore &store) {
    if (!co_await topicsSaved(store, context.cancel)) {
        throw notSaved(store);
    }
}

void requireSaved(TopicStore &store) {
    if (!store.flush()) {
        throw notSaved(store);
    }
}

void requireSaved(Preferences &preferences) {
    if (!preferences.flush()) {
        throw Failure(preferences.writeError().value_or(QString()));
    }
}

} // namespace vorle::cli
