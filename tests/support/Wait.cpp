#include "tests/support/Wait.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QEventLoop>
#include <QTimer>

namespace vorle::test {

void spinUntil(const std::function<bool()> &done, std::chrono::milliseconds deadline) {
    const QDeadlineTimer timer(deadline);
    QTimer tick; // keeps the loop from sleeping past the deadline
    tick.start(20);
    while (!done()) {
        if (timer.hasExpired()) {
            throw std::runtime_error("the awaited thing did not happen before the deadline");
        }
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
}

namespace {
Task<bool> thenTrue(Task<> task) {
    co_await task;
    co_return true;
}
} // namespace

void waitFor(Task<> task, std::chrono::milliseconds deadline) {
    waitFor(thenTrue(std::move(task)), deadline);
}

} // namespace vorle::test
