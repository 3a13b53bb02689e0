#include "tests/support/Settle.h"

#include "base/OnDisk.h"
#include "tests/support/Wait.h"

#include <QCoreApplication>
#include <QThreadPool>

#include <gtest/gtest.h>

namespace vorle::test {

void settle(const std::function<bool()> &idle) {
    QThreadPool &pool = *QThreadPool::globalInstance();
    try {
        spinUntil([&] { return idle() && !isDiskAwaited() && pool.activeThreadCount() == 0; });
        do { // what the pool's last work resumes may give it more
            pool.waitForDone();
            QCoreApplication::processEvents();
        } while (pool.activeThreadCount() > 0 || isDiskAwaited());
    } catch (const std::exception &error) {
        ADD_FAILURE() << error.what();
    }
}

void letDiskAnswer() {
    try {
        spinUntil([] { return !isDiskAwaited(); });
    } catch (const std::exception &) {
        // It hangs, as a test may have wanted it to.
    }
}

} // namespace vorle::test
