#pragma once

#include "base/Async.h"
#include "base/HttpClient.h"
#include "update/Appcast.h"
#include "update/Installation.h"
#include "update/UpdateConfig.h"

#include <functional>

namespace vorle {

/// What is told while a release is fetched and made ready; on the main thread, each may be empty.
struct FetchProgress {
    std::function<void(qint64 bytes)> expected;
    std::function<void(qint64 bytes)> received; ///< that many more
    std::function<void()> unpacking;
    std::function<void(double part)> unpacked; ///< 0 to 1
};

/// Asks the feed for what is newer than `inUse`; nothing where this machine has the newest.
/// @throws UpdateError, Cancelled
Task<std::optional<Release>> findRelease(HttpClient &http, UpdateConfig config, QString inUse,
                                         CancelToken cancel);

/// Fetches a release, checks whose it is, unpacks it, sees that it is what the feed said and that
/// it starts on this machine, and makes it ready (Installation::makeReady). Nothing of it is
/// unpacked before its signature was found good, and nothing run. What failed leaves the
/// installation as it was. Where another process made it ready or put it in place meanwhile,
/// nothing is fetched.
/// @throws UpdateError (UpdateHeldElsewhere where another process is at it), std::system_error,
///         Cancelled
Task<> fetchRelease(HttpClient &http, UpdateConfig config, Installation installation,
                    Release release, FetchProgress progress, CancelToken cancel);

/// Whether the system's packages hold this program, wherever it lies.
/// @throws Cancelled
Task<bool> isPackaged(QString program, CancelToken cancel);

} // namespace vorle
