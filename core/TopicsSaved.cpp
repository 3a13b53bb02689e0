#include "core/TopicsSaved.h"

#include "core/TopicStore.h"

namespace vorle {

Task<bool> topicsSaved(TopicStore &store, CancelToken cancel) {
    cancel.throwIfCancelled();
    if (store.saveError()) {
        store.save(); // the last one failed: nobody else may try again
    }
    constexpr int patience = 2; // of failures: the first may be told of a save before this
    int failures = 0;
    while (!store.isSaved()) {
        const OneShot told;
        bool failed = false;
        QObject scope; // the connections go with it
        QObject::connect(&store, &TopicStore::saved, &scope, [told] { told.fire(); });
        QObject::connect(&store, &TopicStore::saveFailed, &scope, [told, &failed] {
            failed = true;
            told.fire();
        });
        const auto stop = cancel.onCancel([told] { told.fire(); });
        co_await told;
        cancel.throwIfCancelled();
        if (failed && ++failures == patience) {
            co_return false;
        }
        if (failed) {
            store.save(); // the disk may have room again
        }
    }
    co_return true;
}

} // namespace vorle
