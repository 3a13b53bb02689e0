#include "agents/ProcessRunner.h"
#include "agents/TemporaryFiles.h"

#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTimer>

#include <cerrno>
#include <csignal>
#include <system_error>

#include <unistd.h>
#ifdef Q_OS_LINUX
#include <sys/prctl.h>
#endif

namespace vorle {

namespace {

using namespace std::chrono_literals;

constexpr auto grace = 1s;            ///< between SIGTERM and SIGKILL
constexpr auto floodInterval = 250ms; ///< between two looks at the files' sizes
constexpr qint64 errorTailLimit = 65'536;

/// Between fork and exec: only calls that are safe there.
void prepareChild([[maybe_unused]] pid_t parent) {
    ::setpgid(0, 0);
#ifdef Q_OS_LINUX
    // A killed vorle must leave no agent behind. It may have died before the call.
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (::getppid() != parent) {
        ::_exit(1);
    }
#endif
}

/// One child and everything that may end it. Stays where it is while the child lives.
class Child {
public:
    Child(const ProcessRequest &request, const QString &outputPath, const QString &errorPath)
        : m_outputPath(outputPath), m_errorPath(errorPath) {
        m_process.setProgram(request.executable);
        m_process.setArguments(request.arguments);
        m_process.setProcessEnvironment(request.environment);
        m_process.setWorkingDirectory(request.workingDirectory);
        m_process.setStandardOutputFile(outputPath);
        m_process.setStandardErrorFile(errorPath);
        m_process.setChildProcessModifier([parent = ::getpid()] { prepareChild(parent); });
        if (!request.input) {
            m_process.setStandardInputFile(QProcess::nullDevice());
        }
        connectAll();
        m_watchdog.setSingleShot(true);
        m_watchdog.setInterval(request.timeout);
        m_grace.setSingleShot(true);
        m_grace.setInterval(grace);
        m_floodWatch.setInterval(floodInterval);
    }

    void start(const std::optional<QByteArray> &input) {
        m_elapsed.start();
        m_watchdog.start();
        m_floodWatch.start();
        m_process.start();
        m_group = static_cast<pid_t>(m_process.processId());
        if (m_group <= 0) {
            return; // told by errorOccurred
        }
        ::setpgid(m_group, m_group); // whoever comes first, child or parent
        if (input) {
            m_process.write(*input);
            m_process.closeWriteChannel(); // once all is written
        }
    }

    /// SIGTERM to the group now, SIGKILL after the grace. Idempotent.
    void end() {
        if (!m_grace.isActive()) {
            signalGroup(SIGTERM);
            m_grace.start();
        }
    }

    OneShot ended() const { return m_ended; }

    /// @throws std::system_error when it never started
    ProcessEnd result() const {
        if (m_launchFailed) {
            const QByteArray path = QFile::encodeName(m_process.program());
            const int error = ::access(path.constData(), X_OK) != 0 ? errno : ENOEXEC;
            throw std::system_error(error, std::generic_category(),
                                    m_process.errorString().toStdString());
        }
        ProcessEnd end;
        end.status = m_process.exitCode();
        end.elapsed = m_lifetime;
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
            // The leader is reaped; what it left behind still holds the group's number.
            if (m_group > 1) {
                ::kill(-m_group, SIGKILL);
            }
            stop();
        });
        QObject::connect(&m_process, &QProcess::errorOccurred, &m_process,
                         [this](QProcess::ProcessError error) {
                             // Others are told by the end itself, or mean an input left unread.
                             if (error == QProcess::FailedToStart) {
                                 m_launchFailed = true;
                                 stop();
                             }
                         });
        QObject::connect(&m_watchdog, &QTimer::timeout, &m_process, [this] { end(); });
        QObject::connect(&m_grace, &QTimer::timeout, &m_process, [this] { signalGroup(SIGKILL); });
        QObject::connect(&m_floodWatch, &QTimer::timeout, &m_process, [this] {
            if (QFileInfo(m_outputPath).size() + QFileInfo(m_errorPath).size() >
                ProcessEnd::floodLimit) {
                m_flooded = true;
                signalGroup(SIGKILL);
            }
        });
    }

    void signalGroup(int signal) const {
        if (m_group > 1 && m_process.state() != QProcess::NotRunning) {
            ::kill(-m_group, signal);
        }
    }

    void stop() {
        m_lifetime = std::chrono::milliseconds(m_elapsed.elapsed());
        m_watchdog.stop();
        m_grace.stop();
        m_floodWatch.stop();
        m_ended.fire();
    }

    QString m_outputPath;
    QString m_errorPath;
    OneShot m_ended;
    QElapsedTimer m_elapsed;
    std::chrono::milliseconds m_lifetime{0};
    pid_t m_group = 0;
    bool m_launchFailed = false;
    bool m_flooded = false;
    QTimer m_watchdog;
    QTimer m_grace;
    QTimer m_floodWatch;
    QProcess m_process; // last: it goes first, and its signals with it
};

QByteArray readOutput(const QString &path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) && file.size() <= ProcessEnd::outputLimit ? file.readAll()
                                                                                    : QByteArray();
}

QString readTail(const QString &path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        return {};
    }
    const qint64 start = std::max<qint64>(0, file.size() - errorTailLimit);
    file.seek(start);
    QByteArray bytes = file.read(errorTailLimit);
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

    ProcessEnd end = child.result();
    const auto read = [output = output.path(), error = error.path()] {
        return std::pair(readOutput(output), readTail(error));
    };
    std::tie(end.output, end.errorTail) = co_await onPool(read);
    co_return end;
}

} // namespace vorle
