// Stands between the program and one child of it, so that nothing the child started outlives
// either of them: see Guard.h.

#include "agents/guard/Descendants.h"
#include "agents/guard/Guard.h"

#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <optional>

#include <fcntl.h>
#include <poll.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>
#if defined(__linux__)
#include <sys/prctl.h>
#endif

namespace {

using namespace vorle::guard;
using Clock = std::chrono::steady_clock;

constexpr int wrongUsage = 2;
/// What ends this process ends the child politely first; a child's end wakes the loop.
constexpr std::array watchedSignals{SIGCHLD, SIGTERM, SIGINT, SIGHUP};

std::array<int, 2> wakePipe{-1, -1};

void onSignal(int number) {
    const int before = errno;
    const char byte = number == SIGCHLD ? 0 : politeEnd;
    [[maybe_unused]] const auto written = ::write(wakePipe[1], &byte, 1);
    errno = before;
}

bool isWatched(int number) {
    struct sigaction present = {};
    return ::sigaction(number, nullptr, &present) == 0 && present.sa_handler == onSignal;
}

bool makePipe(std::array<int, 2> &ends) {
    if (::pipe(ends.data()) != 0) {
        return false;
    }
    for (const int end : ends) {
        ::fcntl(end, F_SETFD, FD_CLOEXEC);
    }
    return true;
}

/// The child of this process and how it ended.
class Child {
public:
    /// 0, or the `errno` of what could not be done.
    int start(char **words) {
        std::array<int, 2> failure{-1, -1};
        if (!makePipe(failure)) {
            return errno;
        }
        const pid_t guard = ::getpid();
        m_pid = ::fork();
        if (m_pid == 0) {
            become(words, guard, failure[1]);
        }
        const int refused = m_pid < 0 ? errno : 0;
        ::close(failure[1]);
        int error = 0;
        // Ends without a byte once the child is the program.
        if (m_pid > 0 && ::read(failure[0], &error, sizeof error) != sizeof error) {
            error = 0;
        }
        ::close(failure[0]);
        return refused != 0 ? refused : error;
    }

    /// Waits for whatever has ended. False when no child is left.
    bool reap() {
        int status = 0;
        pid_t ended = 0;
        while ((ended = ::waitpid(-1, &status, WNOHANG)) > 0) {
            if (ended == m_pid) {
                m_status = status;
            }
        }
        return ended == 0 || errno != ECHILD;
    }

    bool ended() const { return m_status.has_value(); }

    /// Ends this process as the child did.
    [[noreturn]] void follow() const {
        if (m_status && WIFEXITED(*m_status)) {
            ::_exit(WEXITSTATUS(*m_status));
        }
        const int number = m_status ? WTERMSIG(*m_status) : SIGKILL;
        const struct rlimit noCore = {};
        ::setrlimit(RLIMIT_CORE, &noCore);
        std::signal(number, SIG_DFL);
        ::kill(::getpid(), number);
        ::_exit(128 + number);
    }

private:
    [[noreturn]] static void become(char **words, [[maybe_unused]] pid_t guard, int failure) {
        for (const int number : watchedSignals) {
            if (isWatched(number)) {
                std::signal(number, SIG_DFL);
            }
        }
#if defined(__linux__)
        // Were the guard itself killed, its child must not go on. It may be too late already.
        ::prctl(PR_SET_PDEATHSIG, SIGKILL);
        if (::getppid() != guard) {
            ::_exit(1);
        }
#endif
        ::execv(words[0], words);
        const int error = errno;
        [[maybe_unused]] const auto written = ::write(failure, &error, sizeof error);
        ::_exit(1);
    }

    pid_t m_pid = -1;
    std::optional<int> m_status;
};

/// What is read and written here is the child's alone: a pipe that it closes is closed.
void letGoOfStreams() {
    const int nothing = ::open("/dev/null", O_RDWR);
    for (int stream = 0; nothing >= 0 && stream <= STDERR_FILENO; ++stream) {
        ::dup2(nothing, stream);
    }
}

bool watchSignals() {
    if (!makePipe(wakePipe)) {
        return false;
    }
    for (const int end : wakePipe) {
        ::fcntl(end, F_SETFL, O_NONBLOCK);
    }
    struct sigaction action = {};
    action.sa_handler = onSignal;
    action.sa_flags = SA_RESTART;
    for (const int number : watchedSignals) {
        struct sigaction before = {};
        ::sigaction(number, &action, &before);
        // What a parent told us to ignore (nohup) stays ignored.
        if (number != SIGCHLD && before.sa_handler == SIG_IGN) {
            ::sigaction(number, &before, nullptr);
        }
    }
    return true;
}

enum class Heard { Nothing, Polite, Gone };

Heard listen(int descriptor) {
    std::array<char, 64> bytes{};
    const auto count = ::read(descriptor, bytes.data(), bytes.size());
    if (count <= 0) {
        return count < 0 && (errno == EINTR || errno == EAGAIN) ? Heard::Nothing : Heard::Gone;
    }
    for (const char byte : bytes) {
        if (byte == politeEnd) {
            return Heard::Polite;
        }
    }
    return Heard::Nothing;
}

/// Until the child has ended, or is to be killed. False when the program is gone, or asks for that
/// at once.
bool watch(Child &child, int lifeline) {
    std::optional<Clock::time_point> end;
    while (child.reap() && !child.ended()) {
        const auto left = end ? std::chrono::ceil<std::chrono::milliseconds>(*end - Clock::now())
                              : std::chrono::milliseconds(-1);
        if (end && left.count() <= 0) {
            return true;
        }
        std::array<pollfd, 2> sources{pollfd{lifeline, POLLIN, 0}, pollfd{wakePipe[0], POLLIN, 0}};
        if (::poll(sources.data(), sources.size(), static_cast<int>(left.count())) <= 0) {
            continue;
        }
        const Heard word = sources[0].revents != 0 ? listen(lifeline) : Heard::Nothing;
        const Heard signal = sources[1].revents != 0 ? listen(wakePipe[0]) : Heard::Nothing;
        if (word == Heard::Gone) {
            return false;
        }
        if (!end && (word == Heard::Polite || signal == Heard::Polite)) {
            end = Clock::now() + std::chrono::milliseconds(graceMilliseconds);
            ::kill(0, SIGTERM); // this process too, which has heard it already
        }
    }
    return true;
}

/// Ends everything that descends from here.
void killAll(Child &child) {
    const auto end = Clock::now() + std::chrono::milliseconds(killMilliseconds);
    while (child.reap() && Clock::now() < end) {
        for (const pid_t process : descendants()) {
            ::kill(process, SIGKILL);
        }
        ::poll(nullptr, 0, 2);
    }
}

} // namespace

int main(int count, char **words) {
    if (count < 3) {
        return wrongUsage;
    }
    const int lifeline = std::atoi(words[1]);
    ::fcntl(lifeline, F_SETFD, FD_CLOEXEC);
    ::setsid(); // where whoever started this did not
    adoptOrphans();
    Child child;
    const int error = watchSignals() ? child.start(words + 2) : errno;
    if (error != 0) {
        [[maybe_unused]] const auto written = ::write(lifeline, &error, sizeof error);
        ::_exit(1);
    }
    letGoOfStreams();
    const bool awaited = watch(child, lifeline);
    killAll(child);
    if (!awaited || !child.ended()) {
        ::kill(0, SIGKILL); // what the group still holds, this process included
    }
    child.follow();
}
