#include "app/wiring/Interrupts.h"

#include <array>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace vorle {

namespace {

constexpr std::array handledSignals{SIGINT, SIGTERM, SIGHUP};

// A signal handler may only write to a descriptor: the pipe wakes the event loop.
std::array<int, 2> wakePipe{-1, -1};

void onSignal(int number) {
    std::signal(number, SIG_DFL);
    const char byte = 0;
    [[maybe_unused]] const auto written = write(wakePipe[1], &byte, 1);
}

} // namespace

Interrupts::Interrupts() {
    if (pipe(wakePipe.data()) != 0) {
        return;
    }
    for (const int descriptor : wakePipe) {
        fcntl(descriptor, F_SETFD, FD_CLOEXEC);
        fcntl(descriptor, F_SETFL, O_NONBLOCK);
    }
    m_notifier = std::make_unique<QSocketNotifier>(wakePipe[0], QSocketNotifier::Read);
    QObject::connect(m_notifier.get(), &QSocketNotifier::activated, m_notifier.get(), [this] {
        std::array<char, 16> bytes{};
        [[maybe_unused]] const auto got = read(wakePipe[0], bytes.data(), bytes.size());
        m_source.cancel();
    });
    for (const int number : handledSignals) {
        // What a parent told us to ignore (nohup) stays ignored.
        if (std::signal(number, onSignal) == SIG_IGN) {
            std::signal(number, SIG_IGN);
        }
    }
}

Interrupts::~Interrupts() {
    for (const int number : handledSignals) {
        std::signal(number, SIG_DFL);
    }
    m_notifier.reset();
    close(wakePipe[0]);
    close(wakePipe[1]);
}

} // namespace vorle
