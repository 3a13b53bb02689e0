#include "agents/setup/Downloader.h"

#include "agents/setup/SetupError.h"
#include "base/Descriptor.h"
#include "base/HttpClient.h"

#include <QFile>

#include <cerrno>
#include <system_error>

#include <fcntl.h>
#include <unistd.h>

namespace vorle {

namespace {

using namespace std::chrono_literals;

constexpr qint64 maxDownload = 2'000'000'000;
constexpr auto fetchLimit = 2h; ///< over a slow line

/// Writes all of it; 0, else an `errno`.
int writeAll(int file, QByteArrayView bytes) {
    while (!bytes.isEmpty()) {
        const ssize_t written = ::write(file, bytes.data(), static_cast<std::size_t>(bytes.size()));
        if (written == 0 || (written < 0 && errno != EINTR)) {
            return written == 0 ? EIO : errno;
        }
        bytes = bytes.sliced(std::max<ssize_t>(written, 0));
    }
    return 0;
}

} // namespace

Task<> Downloader::fetch(QUrl source, QString destination, TellProgress progress,
                         CancelToken cancel) const {
    const auto refused = [destination](int error) {
        return std::system_error(error, std::generic_category(), destination.toStdString());
    };
    Descriptor file(::open(QFile::encodeName(destination).constData(),
                           O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
    if (!file.isOpen()) {
        throw refused(errno);
    }
    int error = 0;
    DownloadProgress so;
    HttpRequest request;
    request.url = source;
    request.userAgent = "vorle";
    request.maxBytes = maxDownload;
    request.deadline = fetchLimit;
    request.secureOnly = true;
    request.announced = [&so](qint64 bytes) { so.expected = bytes; };
    request.sink = [&](QByteArrayView piece) {
        error = writeAll(file.number(), piece);
        so.received += piece.size();
        if (error == 0 && progress) {
            progress(so);
        }
        return error == 0;
    };
    const HttpResponse response = co_await m_http->get(std::move(request), cancel);
    if (error != 0) {
        throw refused(error);
    }
    if (!response.ok() || response.truncated || so.received == 0) {
        throw SetupError::download();
    }
    if (file.close() != 0) {
        throw refused(errno);
    }
}

} // namespace vorle
