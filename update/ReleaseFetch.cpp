#include "update/ReleaseFetch.h"

#include "agents/ProcessRunner.h"
#include "base/FileDownload.h"
#include "base/InstallationLayout.h"
#include "search/discovery/Version.h"
#include "storage/DurableFile.h"
#include "storage/FileLock.h"
#include "update/ReleaseArchive.h"
#include "update/UpdateError.h"

#include <QCoreApplication>
#include <QFileInfo>

#include <exception>
#include <memory>
#include <utility>

namespace vorle {

namespace {

/// The folder that is staged in, this process's alone; goes with all that is in it. May take its
/// time to come and to go.
class Staging {
public:
    explicit Staging(const Installation &installation)
        : m_installation(installation), m_lock(installation.lockFile()) {
        // The version in use may be saying that it works, which takes no time.
        constexpr std::chrono::milliseconds patience(500);
        if (!m_lock.lockWithin(patience)) {
            throw UpdateHeldElsewhere();
        }
        installation.sweep();
        makeOwnFolder(installation.stagingFolder());
    }
    Staging(const Staging &) = delete;
    Staging &operator=(const Staging &) = delete;
    ~Staging() { m_installation.clearStaging(); }

private:
    Installation m_installation;
    FileLock m_lock;
};

HttpRequest requestFor(const QUrl &url) {
    HttpRequest request;
    request.url = url;
    request.userAgent = "vorle/" + QCoreApplication::applicationVersion().toUtf8();
    request.secureOnly = true;
    return request;
}

/// @throws UpdateError for an answer that is none
void requireAnswer(const HttpResponse &response, const char *what) {
    if (!response.ok() || response.truncated) {
        throw UpdateError(QStringLiteral("%1 could not be had (outcome %2, status %3)")
                              .arg(QString::fromLatin1(what))
                              .arg(static_cast<int>(response.outcome))
                              .arg(response.status));
    }
}

Task<> download(HttpClient &http, Release release, QString path, FetchProgress progress,
                CancelToken cancel) {
    constexpr std::chrono::minutes patience(60);
    qint64 got = 0;
    HttpRequest request = requestFor(release.archive);
    request.maxBytes = release.bytes;
    request.deadline = patience;
    request.announced = progress.expected;
    request.sink = [&got, received = progress.received](QByteArrayView piece) {
        got += piece.size();
        if (received) {
            received(piece.size());
        }
        return true;
    };
    const HttpResponse response =
        co_await downloadTo(http, std::move(request), std::move(path), cancel);
    requireAnswer(response, "the archive");
    if (got != release.bytes) {
        throw UpdateError(QStringLiteral("the archive is cut short"));
    }
}

/// What an archive holds is what the feed called it, and newer than what runs: a feed may name an
/// old archive, whose signature is good, by a new number.
void requireVersion(const QString &tree, const QString &version, const QString &inUse) {
    constexpr qint64 most = 100;
    const auto bytes = readWhole(tree + u'/' + QString::fromLatin1(layout::versionFile), most);
    const QString told = QString::fromUtf8(bytes.value_or(QByteArray())).trimmed();
    if (told != version || !isNewer(told, inUse)) {
        throw UpdateError(QStringLiteral("the archive holds another version than the feed says"));
    }
}

/// Whether it starts here, with this machine's libraries.
Task<> requireStart(QString program, QString version, CancelToken cancel) {
    constexpr std::chrono::seconds patience(60);
    if (!QFileInfo(program).isExecutable()) {
        throw UpdateError(QStringLiteral("the archive holds no program"));
    }
    ProcessRequest request;
    request.executable = program;
    request.arguments = {QStringLiteral("--version")};
    request.timeout = patience;
    request.environment = QProcessEnvironment::systemEnvironment();
    request.workingDirectory = QFileInfo(program).path();
    const ProcessEnd end = co_await runProcess(std::move(request), cancel);
    if (!end.succeeded() ||
        QString::fromUtf8(end.output).trimmed() != QStringLiteral("vorle ") + version) {
        throw UpdateError(QStringLiteral("the new version does not start"));
    }
}

/// fetchRelease() in a folder that is there already.
Task<> fetchInto(QString folder, HttpClient &http, UpdateConfig config, Installation installation,
                 Release release, FetchProgress progress, CancelToken cancel) {
    const QString archive = folder + QStringLiteral("/archive");
    const QString tree = folder + QStringLiteral("/tree");
    co_await download(http, release, archive, progress, cancel);
    const bool isOurs =
        co_await onPool([archive, key = config.publicKey, signature = release.signature] {
            return isSignedBy(key, signature, archive);
        });
    cancel.throwIfCancelled();
    if (!isOurs) {
        throw UpdateError(QStringLiteral("the archive is not signed by vorle's key"));
    }
    if (progress.unpacking) {
        progress.unpacking();
    }
    const auto tell = [unpacked = progress.unpacked](double part) {
        if (unpacked) {
            QMetaObject::invokeMethod(
                QCoreApplication::instance(), [unpacked, part] { unpacked(part); },
                Qt::QueuedConnection);
        }
    };
    co_await onPool([archive, tree, tell] {
        unpackRelease(archive, tree, tell);
        return true;
    });
    requireVersion(tree, release.version, installation.version());
    co_await requireStart(tree + u'/' + QString::fromLatin1(layout::program), release.version,
                          cancel);
    co_await onPool([installation, tree, version = release.version] {
        installation.makeReady(tree, version);
        return true;
    });
}

} // namespace

Task<std::optional<Release>> findRelease(HttpClient &http, UpdateConfig config, QString inUse,
                                         CancelToken cancel) {
    HttpRequest request = requestFor(config.feed);
    request.maxBytes = maxAppcastBytes;
    const HttpResponse response = co_await http.get(std::move(request), cancel);
    requireAnswer(response, "the feed");
    co_return newestRelease(readAppcast(response.body, response.url), Machine::ofThisProcess(),
                            inUse);
}

Task<> fetchRelease(HttpClient &http, UpdateConfig config, Installation installation,
                    Release release, FetchProgress progress, CancelToken cancel) {
    auto staging =
        co_await onPool([installation] { return std::make_shared<const Staging>(installation); });
    std::exception_ptr fault;
    // Unless another process has just done it, or has gone further.
    const auto coming = installation.coming();
    if (!coming || isNewer(release.version, *coming)) {
        co_await settle(fetchInto(installation.stagingFolder(), http, std::move(config),
                                  installation, release, std::move(progress), cancel),
                        fault);
    }
    co_await onPool([staging = std::move(staging)]() mutable {
        staging.reset();
        return true;
    });
    if (fault) {
        std::rethrow_exception(fault);
    }
}

Task<bool> isPackaged(QString program, CancelToken cancel) {
    constexpr std::chrono::seconds patience(10);
    const QString asked = QStringLiteral("/usr/bin/dpkg-query");
    if (!QFileInfo(asked).isExecutable()) {
        co_return false;
    }
    ProcessRequest request;
    request.executable = asked;
    request.arguments = {QStringLiteral("-S"), program};
    request.timeout = patience;
    request.environment = QProcessEnvironment::systemEnvironment();
    request.workingDirectory = QStringLiteral("/");
    try {
        const ProcessEnd end = co_await runProcess(std::move(request), cancel);
        co_return end.succeeded();
    } catch (const std::system_error &) {
        co_return false; // nobody to ask
    }
}

} // namespace vorle
