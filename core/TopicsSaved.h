#pragma once

#include "base/Async.h"

namespace vorle {

class TopicStore;

/// Whether the store's present state is on disk, as `TopicStore::flush()` tells it, without holding
/// the thread up: ends once it is, or once saves have failed and were tried again. Main thread;
/// the store outlives the wait. @throws Cancelled as soon as `cancel` is; the save goes on
Task<bool> topicsSaved(TopicStore &store, CancelToken cancel = {});

} // namespace vorle
