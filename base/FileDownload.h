#pragma once

#include "base/HttpClient.h"

#include <QString>

namespace vorle {

/// What of a download may wait in memory for a disk that is slower than the network, in bytes.
inline constexpr qint64 maxUnwritten = 64'000'000;

/// One GET whose body goes into the new file `path`, the user's alone. It is made and written on
/// other threads, in order: the disk never holds the caller's up. `request.sink`, which may be
/// empty, sees each piece when it arrives, and may end the request as always. When this ends,
/// however it ends, nothing is written any more; what came of the file is left to whoever owns its
/// folder. Main thread.
/// @throws std::system_error where the file cannot be made (then nothing is asked) or written, or
///         the disk is `maxWaiting` behind the network (ETIMEDOUT)
/// @throws Cancelled
Task<HttpResponse> downloadTo(HttpClient &http, HttpRequest request, QString path,
                              CancelToken cancel, qint64 maxWaiting = maxUnwritten);

} // namespace vorle
