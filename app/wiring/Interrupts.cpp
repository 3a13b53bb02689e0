#include "app/wiring/Interrupts.h"

#include <array>
#include <atomic>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace vorle {

namespace {

constexpr std::array handledSignals{SIGINT, SIGTERM, SIGHUP};

// A signal handler may only write to a descriptor: the pipe wakes the event loop.
std::array<int, 2> wakePipe{-1, -1};
std::atomic<int> wakeEnd{-1}; // of the pipe, as long as there is one

void onSignal(int number) {
    // Only who presses Ctrl-C twice is impatient. A session that ends tells every process of it,
    // and whoever stands between hands it on besides: the same request comes two or three times.
    if (number == SIGINT) {
        std::signal(number, SIG_DFL);
    }
    const char byte = 0;
    [[maybe_unused]] const auto written = write(wakeEnd, &byte, 1);
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
    wakeEnd = wakePipe[1];
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
        // Who was told to end has all but ended: the same request once more must not make a crash
        // of that. Another program in this process's place gets the system's own way back.
        if (number == SIGINT || !m_source.token().isCancelled()) {
            std::signal(number, SIG_DFL);
        }
    }
    m_notifier.reset();
    wakeEnd = -1;
    close(wakePipe[0]);
    close(wakePipe[1]);
}

} // namespace vorle
