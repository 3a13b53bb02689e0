#pragma once

#include "base/Async.h"
#include "base/OnDemand.h"

#include <QString>
#include <QUrl>

#include <functional>

namespace vorle {

class HttpClient;

/// How far a download is, in bytes; `expected` is -1 where the server does not say.
struct DownloadProgress {
    qint64 expected = -1;
    qint64 received = 0;
};
using TellProgress = std::function<void(const DownloadProgress &)>;

/// Fetches a file for an installation: over https alone, without cookies, not kept by anything.
/// The disk is written to on other threads. Main thread; what it is given outlives the fetch.
class Downloader {
public:
    explicit Downloader(OnDemand<HttpClient> http) : m_http(std::move(http)) {}

    /// Puts what `source` answers into the new file `destination`, the user's alone; `progress`,
    /// which may be empty, is told as it arrives. Whole, or it throws; what came of it is left to
    /// whoever owns the folder.
    /// @throws SetupError (download) for whatever the network or the server does
    /// @throws std::system_error where the file cannot be written
    /// @throws Cancelled
    Task<> fetch(QUrl source, QString destination, TellProgress progress, CancelToken cancel) const;

private:
    OnDemand<HttpClient> m_http;
};

} // namespace vorle
