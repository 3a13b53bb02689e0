#include "agents/ProcessRunner.h"

#include "agents/TemporaryFiles.h"
#include "agents/guard/Guard.h"
#include "base/Descriptor.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTimer>

#include <array>
#include <cerrno>
#include <csignal>
#include <system_error>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <unistd.h>

namespace vorle {

namespace {

using namespace std::chrono_literals;

/// What the guard has for ending everything, and more: past it the guard itself is at fault.
constexpr auto maxGuardWait =
    std::chrono::milliseconds(guard::graceMilliseconds + guard::killMilliseconds + 1'000);
constexpr auto sizeInterval = 250ms; ///< between two looks at the files' sizes
constexpr qint64 maxErrorTail = 65'536;
constexpr int maxLastTells = 16; ///< of what a child printed just before its end
constexpr qint64 maxErrorFile = 8'000'000;

QString guardProgram() {
    return QCoreApplication::applicationDirPath() + QStringLiteral("/vorle-guard");
}

/// The two ends of the stream between this process and the guard of a child; no other child gets
/// either.
struct LivenessSocket {
    Descriptor ours{-1};
    Descriptor guards{-1};

    /// @throws std::system_error
    static LivenessSocket made() {
        std::array<int, 2> ends{};
        if (::socketpair(AF_UNIX, SOCK_STREAM, 0, ends.data()) != 0) {
            throw std::system_error(errno, std::generic_category(), "socketpair");
        }
        for (const int end : ends) {
            ::fcntl(end, F_SETFD, FD_CLOEXEC);
        }
        ::fcntl(ends[0], F_SETFL, O_NONBLOCK);
#if defined(SO_NOSIGPIPE)
        const int on = 1;
        ::setsockopt(ends[0], SOL_SOCKET, SO_NOSIGPIPE, &on, sizeof on);
#endif
        return {Descriptor(ends[0]), Descriptor(ends[1])};
    }
};

/// Keeps the end of a file of errors that grew past what is worth its place on the disk. The child
/// appends, so it goes on behind what is left.
void shorten(const QString &path) {
    QFile file(path);
    if (file.size() > maxErrorFile && file.open(QIODevice::ReadWrite)) {
        file.seek(file.size() - maxErrorTail);
        const QByteArray tail = file.read(maxErrorTail);
        file.resize(0);
        file.seek(0);
        file.write(tail);
    }
}

/// Follows a file that somebody writes to.
class Follower {
public:
    explicit Follower(const QString &path) : m_file(path) {}

    /// What came since, 64 KB at most; the rest comes next.
    QByteArray next() {
        if (!m_file.isOpen() && !m_file.open(QIODevice::ReadOnly | QIODevice::Unbuffered)) {
            return {};
        }
        if (m_file.size() < m_at) {
            m_at = 0; // it was shortened
        }
        m_file.seek(m_at);
        const QByteArray bytes = m_file.read(maxErrorTail);
        m_at += bytes.size();
        return bytes;
    }

private:
    QFile m_file;
    qint64 m_at = 0;
};

/// One child under its guard, and everything that may end it. Stays where it is while they live.
class Child {
public:
    Child(const ProcessRequest &request, const QString &outputPath, const QString &errorPath)
        : m_executable(request.executable)
        , m_outputPath(outputPath)
        , m_errorPath(errorPath)
        , m_heard(request.heard)
        , m_output(outputPath)
        , m_errors(errorPath)
        , m_lifeline(LivenessSocket::made()) {
        const int descriptor = m_lifeline.guards.number();
        m_process.setProgram(guardProgram());
        m_process.setArguments(QStringList{QString::number(descriptor), request.executable} +
                               request.arguments);
        m_process.setProcessEnvironment(request.environment);
        m_process.setWorkingDirectory(request.workingDirectory);
        m_process.setStandardOutputFile(outputPath);
        m_process.setStandardErrorFile(errorPath, QIODevice::Append);
        // Between fork and exec: only calls that are safe there.
        m_process.setChildProcessModifier([descriptor, most = rlim_t(request.maxFileBytes)] {
            ::setsid();
            ::fcntl(descriptor, F_SETFD, 0);
            if (const rlimit bound{most, most}; most > 0) {
                ::setrlimit(RLIMIT_FSIZE, &bound);
            }
        });
        if (!request.input) {
            m_process.setStandardInputFile(QProcess::nullDevice());
        }
        connectAll();
        m_watchdog.setSingleShot(true);
        m_watchdog.setInterval(request.timeout);
        m_guardTimer.setSingleShot(true);
        m_guardTimer.setInterval(maxGuardWait);
        m_sizeWatch.setInterval(sizeInterval);
    }

    void start(const std::optional<QByteArray> &input) {
        m_elapsed.start();
        m_watchdog.start();
        m_sizeWatch.start();
        m_process.start();
        m_lifeline.guards.close(); // the guard has it now
        m_group = static_cast<pid_t>(m_process.processId());
        if (m_group > 0 && input) { // else told by errorOccurred
            m_process.write(*input);
            m_process.closeWriteChannel(); // once all is written
        }
    }

    /// Asks for a polite end, which the guard sees through. Idempotent.
    void end() {
        if (!m_guardTimer.isActive() && m_process.state() != QProcess::NotRunning) {
#if defined(MSG_NOSIGNAL)
            constexpr int flags = MSG_NOSIGNAL;
#else
            constexpr int flags = 0;
#endif
            ::send(m_lifeline.ours.number(), &guard::politeEnd, 1, flags);
            m_guardTimer.start();
        }
    }

    OneShot ended() const { return m_ended; }

    /// Tells of what was printed since; false when that is nothing.
    bool tell() {
        if (!m_heard) {
            return false;
        }
        const QByteArray output = m_output.next();
        const QByteArray error = m_errors.next();
        m_heard(output, error);
        return !output.isEmpty() || !error.isEmpty();
    }

    /// @throws std::system_error when it never started
    ProcessEnd result() const {
        if (m_launchError != 0) {
            throw std::system_error(m_launchError, std::generic_category(),
                                    m_executable.toStdString());
        }
        ProcessEnd end;
        end.status = m_process.exitCode();
        end.elapsed = m_lifetime;
        end.timedOut = m_timedOut;
        if (m_flooded) {
            end.how = ProcessEnd::How::Flooded;
        } else if (m_process.exitStatus() == QProcess::CrashExit) {
            end.how = ProcessEnd::How::Signalled;
        }
        return end;
    }

private:
    void connectAll() {
        QObject::connect(&m_process, &QProcess::finished, &m_process, [this] {
            int error = 0;
            if (::recv(m_lifeline.ours.number(), &error, sizeof error, 0) == sizeof error) {
                m_launchError = error;
            }
            killGroup(); // where the guard was killed, or cannot reach them all
            stop();
        });
        QObject::connect(
            &m_process, &QProcess::errorOccurred, &m_process, [this](QProcess::ProcessError error) {
                // Others are told by the end itself, or mean an input left unread.
                if (error == QProcess::FailedToStart) {
                    // The guard is there and in order: no process could be made.
                    const QByteArray path = QFile::encodeName(guardProgram());
                    m_launchError = ::access(path.constData(), X_OK) != 0 ? errno : EAGAIN;
                    stop();
                }
            });
        QObject::connect(&m_watchdog, &QTimer::timeout, &m_process, [this] {
            m_timedOut = true;
            end();
        });
        QObject::connect(&m_guardTimer, &QTimer::timeout, &m_process, [this] { killGroup(); });
        QObject::connect(&m_sizeWatch, &QTimer::timeout, &m_process, [this] {
            tell();
            shorten(m_errorPath);
            if (QFileInfo(m_outputPath).size() > ProcessEnd::maxOutputBytes) {
                m_flooded = true;
                m_lifeline.ours.close(); // the guard ends everything at once
                m_guardTimer.start();
            }
        });
    }

    void killGroup() const {
        if (m_group > 1) {
            ::kill(-m_group, SIGKILL);
        }
    }

    void stop() {
        m_lifetime = std::chrono::milliseconds(m_elapsed.elapsed());
        m_watchdog.stop();
        m_guardTimer.stop();
        m_sizeWatch.stop();
        m_ended.fire();
    }

    QString m_executable;
    QString m_outputPath;
    QString m_errorPath;
    std::function<void(QByteArrayView, QByteArrayView)> m_heard;
    Follower m_output;
    Follower m_errors;
    LivenessSocket m_lifeline;
    OneShot m_ended;
    QElapsedTimer m_elapsed;
    std::chrono::milliseconds m_lifetime{0};
    pid_t m_group = 0;
    int m_launchError = 0; ///< an errno
    bool m_flooded = false;
    bool m_timedOut = false;
    QTimer m_watchdog;
    QTimer m_guardTimer; ///< with a guard that was asked for the end
    QTimer m_sizeWatch;
    QProcess m_process; // last: it goes first, and its signals with it
};

QByteArray readOutput(const QString &path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) && file.size() <= ProcessEnd::maxReadOutput
               ? file.readAll()
               : QByteArray();
}

QString readTail(const QString &path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        return {};
    }
    const qint64 start = std::max<qint64>(0, file.size() - maxErrorTail);
    file.seek(start);
    QByteArray bytes = file.read(maxErrorTail);
    qsizetype cut = 0; // the rest of a character that the start fell into
    while (start > 0 && cut < bytes.size() && (bytes.at(cut) & 0xC0) == 0x80) {
        ++cut;
    }
    return QString::fromUtf8(QByteArrayView(bytes).sliced(cut));
}

} // namespace

Task<ProcessEnd> runProcess(ProcessRequest request, CancelToken cancel) {
    cancel.throwIfCancelled();
    const TemporaryFile output(u"vorle-run-", u".out");
    const TemporaryFile error(u"vorle-run-", u".err");
    Child child(request, output.path(), error.path());
    child.start(request.input);
    const auto registration = cancel.onCancel([&child] { child.end(); });
    co_await child.ended();
    cancel.throwIfCancelled();
    for (int tells = 0; tells < maxLastTells && child.tell(); ++tells) {
    }

    ProcessEnd end = child.result();
    const auto read = [output = output.path(), error = error.path()] {
        return std::pair(readOutput(output), readTail(error));
    };
    std::tie(end.output, end.errorTail) = co_await onPool(read);
    co_return end;
}

} // namespace vorle
