// What people start: runs the version in use, and goes back to the one before where a new one does
// not start. It stays without Qt, and is replaced by no update: it is what puts things right.

#include "base/InstallationLayout.h"

#include <sys/file.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <fcntl.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

namespace {

using std::string;
namespace layout = vorle::layout;

#ifndef VORLE_TRIAL_SECONDS
#define VORLE_TRIAL_SECONDS 300
#endif
/// How long a version on trial may take to open, or to say what it waits for. A start takes a
/// second or two: that is a hundred times as long, so that a machine that is slow, or busy, is not
/// taken for a version that hangs. Counted in the launcher's own turns, which come late where the
/// machine does, and not at all while it sleeps or this is stopped.
constexpr int trialSeconds = VORLE_TRIAL_SECONDS;
constexpr int secondsToEnd = std::min(10, trialSeconds); ///< for one that is told to

volatile std::sig_atomic_t childToTell = 0;

void handOn(int signal) {
    if (childToTell > 0) {
        ::kill(static_cast<pid_t>(childToTell), signal);
    }
}

class Folder {
public:
    explicit Folder(string path) : m_path(std::move(path)) {}

    string at(const string &name) const { return m_path + '/' + name; }
    string program() const { return at(string(layout::current) + '/' + layout::program); }
    /// The version that a link leads to; "" where it is none.
    string versionAt(const char *name) const {
        std::array<char, PATH_MAX> target{};
        const auto length = ::readlink(at(name).c_str(), target.data(), target.size());
        const string whole(target.data(), length > 0 ? static_cast<size_t>(length) : 0);
        return whole.substr(whole.rfind('/') + 1); // from the start where there is none
    }
    bool isOnTrial() const {
        const string before = versionAt(layout::previous);
        return !before.empty() && before != versionAt(layout::current);
    }

    /// The right to try the version on trial, for as long as this process lives. False where
    /// another launcher tries it just now: a start beside that one, as a second click on the icon,
    /// says nothing of the version.
    bool takeTrial() const {
        const int file =
            ::open(at(layout::starts).c_str(), O_RDWR | O_CREAT | O_CLOEXEC, S_IRUSR | S_IWUSR);
        return file < 0 || ::flock(file, LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK;
    }
    bool isTried(const string &version) const {
        return isOnTrial() && versionAt(layout::current) == version;
    }
    bool isTakenBack(const string &version) const {
        std::array<char, 100> text{};
        const int file = ::open(at(layout::refused).c_str(), O_RDONLY | O_CLOEXEC);
        const auto length = file < 0 ? 0 : ::read(file, text.data(), text.size());
        if (file >= 0) {
            ::close(file);
        }
        return versionAt(layout::current) != version && length > 0 &&
               string(text.data(), static_cast<size_t>(length)) == version;
    }
    bool hasAnswered() const { return ::access(at(layout::answers).c_str(), F_OK) == 0; }
    void forgetAnswer() const { ::unlink(at(layout::answers).c_str()); }
    int startsCounted() const {
        struct stat state{};
        return ::stat(at(layout::starts).c_str(), &state) == 0 ? static_cast<int>(state.st_size)
                                                               : 0;
    }
    void countStart() const {
        const int file =
            ::open(at(layout::starts).c_str(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0600);
        if (file >= 0) {
            [[maybe_unused]] const auto written = ::write(file, "x", 1);
            ::fsync(file);
            ::close(file);
        }
    }
    void forgetStart() const {
        if (const int counted = startsCounted(); counted > 0) {
            [[maybe_unused]] const int done = ::truncate(at(layout::starts).c_str(), counted - 1);
        }
    }

    /// False where there is nothing to go back to.
    bool goBack() const {
        const string before = at(string(layout::previous) + '/' + layout::program);
        if (::access(before.c_str(), X_OK) != 0) {
            return false;
        }
        noteRefused();
        // One step: the version before is in use, and nothing is on trial any more.
        if (::rename(at(layout::previous).c_str(), at(layout::current).c_str()) != 0) {
            return false;
        }
        ::unlink(at(layout::starts).c_str());
        forgetAnswer();
        const int folder = ::open(m_path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        if (folder >= 0) {
            ::fsync(folder);
            ::close(folder);
        }
        std::fputs("vorle: updates: the new version does not start, the one before is back\n",
                   stderr);
        return true;
    }

private:
    void noteRefused() const {
        const string version = versionAt(layout::current);
        const string fresh = at(string(layout::refused) + ".new"); // half a number is another one
        const int file =
            ::open(fresh.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, S_IRUSR | S_IWUSR);
        if (file >= 0) {
            const bool isWhole = ::write(file, version.data(), version.size()) ==
                                     static_cast<ssize_t>(version.size()) &&
                                 ::fsync(file) == 0;
            ::close(file);
            if (isWhole) {
                ::rename(fresh.c_str(), at(layout::refused).c_str());
            }
        }
    }

    string m_path;
};

/// The folder this program lies in, whatever links it was reached by.
string ownFolder() {
    std::array<char, PATH_MAX> path{};
    const auto length = ::readlink("/proc/self/exe", path.data(), path.size() - 1);
    const string whole(path.data(), length > 0 ? static_cast<size_t>(length) : 0);
    const auto slash = whole.rfind('/');
    return slash == string::npos ? string(".") : whole.substr(0, slash);
}

/// Whether a start opens the app; a command says nothing of the window, and without a screen no
/// version opens.
bool opensApp(int argc, char **argv) {
    const auto isSet = [](const char *name) {
        const char *value = std::getenv(name);
        return value != nullptr && *value != 0;
    };
    const bool hasScreen = isSet("DISPLAY") || isSet("WAYLAND_DISPLAY") || isSet("QT_QPA_PLATFORM");
    return hasScreen && (argc <= 1 || (argc == 2 && std::strcmp(argv[1], "--hidden") == 0));
}

int fail(const Folder &folder) {
    std::fprintf(stderr, "vorle: %s: %s\n", folder.program().c_str(), std::strerror(errno));
    return 127;
}

/// Whether it ended as a program does that cannot run here: it was not found, or lacks a library.
/// Who ended with a refusal in its own words did run.
bool didNotRun(int status) {
    constexpr int notExecutable = 126;
    constexpr int notFound = 127;
    return WIFEXITED(status) &&
           (WEXITSTATUS(status) == notExecutable || WEXITSTATUS(status) == notFound);
}

/// Whether it crashed; which may have a reason that every version has, as a screen that is gone.
bool hasCrashed(int status) {
    switch (WIFSIGNALED(status) ? WTERMSIG(status) : 0) {
    case SIGSEGV:
    case SIGBUS:
    case SIGILL:
    case SIGFPE:
    case SIGABRT:
    case SIGSYS:
    case SIGTRAP:
        return true;
    default:
        return false;
    }
}

/// The same end for this process.
[[noreturn]] void endAs(int status) {
    if (WIFSIGNALED(status)) {
        std::signal(WTERMSIG(status), SIG_DFL);
        ::raise(WTERMSIG(status));
        std::_Exit(128 + WTERMSIG(status));
    }
    std::_Exit(WEXITSTATUS(status));
}

/// The version in use at work as a child, which is told what this process is told.
class Child {
public:
    Child(const Folder &folder, char **argv) : m_process(::fork()) {
        if (m_process == 0) {
            ::execv(folder.program().c_str(), argv);
            std::_Exit(127);
        }
        if (m_process < 0) {
            return;
        }
        childToTell = m_process;
        // The terminal tells the child too; a session's end tells only whom it knows.
        std::signal(SIGINT, SIG_IGN);
        std::signal(SIGQUIT, SIG_IGN);
        std::signal(SIGTERM, handOn);
        std::signal(SIGHUP, handOn);
    }
    ~Child() {
        childToTell = 0;
        for (const int signal : {SIGINT, SIGQUIT, SIGTERM, SIGHUP}) {
            std::signal(signal, SIG_DFL);
        }
    }
    Child(const Child &) = delete;
    Child &operator=(const Child &) = delete;

    bool hasStarted() const { return m_process > 0; }
    bool hasEnded() {
        m_ended = m_ended || ::waitpid(m_process, &m_status, WNOHANG) == m_process;
        return m_ended;
    }
    void wait() {
        while (!m_ended && ::waitpid(m_process, &m_status, 0) < 0 && errno == EINTR) {
        }
        m_ended = true;
    }
    /// False once it has ended, which is not waited for longer than a second.
    bool livesOn() {
        sigset_t childEnds;
        sigset_t before;
        ::sigemptyset(&childEnds);
        ::sigaddset(&childEnds, SIGCHLD);
        ::sigprocmask(SIG_BLOCK, &childEnds, &before); // or its end could fall before the wait
        const timespec second{1, 0};
        if (!hasEnded()) {
            ::sigtimedwait(&childEnds, nullptr, &second);
        }
        ::sigprocmask(SIG_SETMASK, &before, nullptr);
        return !hasEnded();
    }
    void end() {
        ::kill(m_process, SIGTERM);
        for (int seconds = 0; seconds < secondsToEnd && livesOn(); ++seconds) {
        }
        if (!hasEnded()) {
            ::kill(m_process, SIGKILL);
            wait();
        }
    }
    /// Of one that has ended.
    int status() const { return m_status; }

private:
    pid_t m_process;
    int m_status = 0;
    bool m_ended = false;
};

/// Waits for the end of an app on trial. False, and it is ended, where it neither opened nor said
/// what it waits for in all its time, or where another launcher, whose trial it is, went back.
bool endsByItself(const Folder &folder, Child &child, const string &tried, bool isMine) {
    int seconds = 0;
    while (folder.isTried(tried) && child.livesOn()) {
        seconds = folder.hasAnswered() ? 0 : seconds + 1;
        if (isMine && seconds >= trialSeconds) {
            child.end();
            return false;
        }
    }
    if (!isMine && folder.isTakenBack(tried) && child.livesOn()) {
        child.end();
        return false;
    }
    child.wait();
    return true;
}

/// Runs the version on trial as a child, and comes back only where it did not run or hung, or
/// crashed for the last time it may: the version before is in use again then, if there is one.
void tryNew(const Folder &folder, int argc, char **argv) {
    const bool app = opensApp(argc, argv);
    const string tried = folder.versionAt(layout::current);
    const bool isMine = app && folder.takeTrial();
    if (isMine && folder.startsCounted() >= layout::maxStarts) {
        folder.goBack();
        return;
    }
    if (isMine) {
        folder.forgetAnswer();
        folder.countStart();
    }
    Child child(folder, argv);
    if (!child.hasStarted()) {
        return;
    }
    if (app && !endsByItself(folder, child, tried, isMine)) {
        if (isMine) {
            folder.goBack();
        }
        return;
    }
    child.wait();
    const int status = child.status();
    if (!folder.isTried(tried)) {
        endAs(status); // it said that it works, or another one took its place meanwhile
    }
    const bool failed = didNotRun(status) || hasCrashed(status);
    if (!isMine && (app || !failed || !folder.takeTrial())) {
        endAs(status); // an app that another launcher tries will tell
    }
    if (hasCrashed(status) && !app) {
        folder.countStart();
    }
    const bool isSpent = hasCrashed(status) && folder.startsCounted() >= layout::maxStarts;
    if ((didNotRun(status) || isSpent) && folder.goBack()) {
        return;
    }
    if (app && WIFEXITED(status) && WEXITSTATUS(status) == 0) {
        folder.forgetStart();
    }
    endAs(status);
}

} // namespace

int main(int argc, char **argv) {
    const Folder folder(ownFolder());
    if (folder.isOnTrial()) {
        tryNew(folder, argc, argv);
    }
    ::execv(folder.program().c_str(), argv);
    return fail(folder);
}
