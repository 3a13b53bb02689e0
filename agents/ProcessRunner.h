#pragma once

#include "base/Async.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QProcessEnvironment>
#include <QString>
#include <QStringList>

#include <chrono>
#include <functional>
#include <optional>

namespace vorle {

struct ProcessRequest {
    QString executable; ///< a path
    QStringList arguments;
    /// Given to the child through a pipe, which is then closed; without it the child reads the
    /// null device. A child that does not read it all is no error.
    std::optional<QByteArray> input;
    std::chrono::milliseconds timeout; ///< after which the process is ended
    QProcessEnvironment environment;   ///< the child's whole environment
    QString workingDirectory;
    /// No file that the child or its own children write may grow past it, in bytes: whoever tries
    /// is ended, or told so, by the system. 0 is no bound.
    qint64 maxFileBytes = 0;
    /// Told of what the child has printed since, some four times a second while it runs, whether
    /// anything came or not, and once more at its end.
    std::function<void(QByteArrayView output, QByteArrayView error)> heard = {};
};

/// How a child process ended.
struct ProcessEnd {
    enum class How {
        Exited,    ///< by itself, with an exit status
        Signalled, ///< by a signal it did not catch
        Flooded    ///< by us: its standard output passed `maxOutputBytes` on disk
    };

    /// An output past this many bytes is not read: `output` is then empty.
    static constexpr qint64 maxReadOutput = 16'000'000;
    static constexpr qint64 maxOutputBytes = 32'000'000;

    How how = How::Exited;
    int status = 0;                       ///< the exit status, or the signal's number
    bool timedOut = false;                ///< it was ended because its time was over
    QByteArray output;                    ///< all of standard output
    QString errorTail;                    ///< the end of standard error, 64 KB at most
    std::chrono::milliseconds elapsed{0}; ///< since the launch

    bool succeeded() const { return how == How::Exited && status == 0; }
};

/// Runs one program to its end, in a session of its own, without a shell. Output and error go to
/// files, so that a talkative child never blocks; of a long standard error only the end is kept,
/// however much it is. Past the time-out the child's group gets SIGTERM, a second later everything
/// that descends from it SIGKILL, as does what is left when the child ends, and all of it when this
/// process is gone, however it ended: a guard stands between them (agents/guard/Guard.h). The child
/// is always reaped and the files are always removed. Main thread; suspends its caller.
/// @throws std::system_error when a file cannot be created or the program not be launched
/// @throws Cancelled once the child and its descendants, ended as at the time-out, are gone
Task<ProcessEnd> runProcess(ProcessRequest request, CancelToken cancel = {});

} // namespace vorle
