#include "base/FileDownload.h"

#include "base/Descriptor.h"

#include <QFile>

#include <algorithm>
#include <cerrno>
#include <exception>
#include <memory>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>

namespace vorle {

namespace {

std::system_error refused(int error, const QString &path) {
    return {error, std::generic_category(), path.toStdString()};
}

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

/// A file that is written piece by piece, one after the other on other threads. Stays where it is
/// until it has ended.
class PieceWriter {
public:
    PieceWriter(std::shared_ptr<Descriptor> file, qint64 maxWaiting)
        : m_file(std::move(file)), m_maxWaiting(maxWaiting) {}

    /// Keeps the piece for whoever writes; false once something was refused.
    bool take(QByteArrayView piece) {
        m_waiting += piece;
        if (m_error == 0 && m_waiting.size() > m_maxWaiting) {
            m_error = ETIMEDOUT;
        }
        if (m_error == 0 && !m_isWriting) {
            m_isWriting = true;
            m_work.add(writeOut());
        }
        return m_error == 0;
    }

    /// Once all of it is written, and the file closed: 0, else an `errno`.
    Task<int> end() {
        co_await m_work.join();
        const int closing =
            co_await onPool([file = m_file] { return file->close() == 0 ? 0 : errno; });
        co_return m_error != 0 ? m_error : closing;
    }

private:
    Task<> writeOut() {
        while (m_error == 0 && !m_waiting.isEmpty()) {
            const int error =
                co_await onPool([file = m_file, bytes = std::exchange(m_waiting, QByteArray())] {
                    return writeAll(file->number(), bytes);
                });
            m_error = m_error != 0 ? m_error : error;
        }
        m_isWriting = false;
    }

    std::shared_ptr<Descriptor> m_file;
    qint64 m_maxWaiting;
    QByteArray m_waiting;
    int m_error = 0;
    bool m_isWriting = false;
    TaskGroup m_work;
};

Task<> answerInto(HttpResponse &response, HttpClient &http, HttpRequest request,
                  CancelToken cancel) {
    response = co_await http.get(std::move(request), std::move(cancel));
}

} // namespace

Task<HttpResponse> downloadTo(HttpClient &http, HttpRequest request, QString path,
                              CancelToken cancel, qint64 maxWaiting) {
    auto file = co_await onPool([path] {
        auto made = std::make_shared<Descriptor>(::open(QFile::encodeName(path).constData(),
                                                        O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC,
                                                        S_IRUSR | S_IWUSR));
        if (!made->isOpen()) {
            throw refused(errno, path);
        }
        return made;
    });
    PieceWriter writer(std::move(file), maxWaiting);
    request.sink = [&writer, seen = std::move(request.sink)](QByteArrayView piece) {
        return writer.take(piece) && (!seen || seen(piece));
    };
    HttpResponse response;
    std::exception_ptr fault;
    co_await settle(answerInto(response, http, std::move(request), std::move(cancel)), fault);
    const int error = co_await writer.end();
    if (fault) {
        std::rethrow_exception(fault);
    }
    if (error != 0) {
        throw refused(error, path);
    }
    co_return response;
}

} // namespace vorle
