#include "agents/setup/Downloader.h"

#include "agents/setup/SetupError.h"
#include "base/FileDownload.h"

#include <utility>

namespace vorle {

namespace {

using namespace std::chrono_literals;

constexpr qint64 maxDownload = 2'000'000'000;
constexpr auto fetchLimit = 2h; ///< over a slow line

} // namespace

Task<> Downloader::fetch(QUrl source, QString destination, TellProgress progress,
                         CancelToken cancel) const {
    DownloadProgress so;
    HttpRequest request;
    request.url = source;
    request.userAgent = "vorle";
    request.maxBytes = maxDownload;
    request.deadline = fetchLimit;
    request.secureOnly = true;
    request.announced = [&so](qint64 bytes) { so.expected = bytes; };
    request.sink = [&](QByteArrayView piece) {
        so.received += piece.size();
        if (progress) {
            progress(so);
        }
        return true;
    };
    const HttpResponse response =
        co_await downloadTo(*m_http, std::move(request), std::move(destination), cancel);
    if (!response.ok() || response.truncated || so.received == 0) {
        throw SetupError::download();
    }
}

} // namespace vorle
