// What the system's requests to end come to.

#include "app/wiring/Interrupts.h"

#include "tests/support/Wait.h"

#include <gtest/gtest.h>

#include <csignal>

namespace vorle {
namespace {

TEST(InterruptsTest, a_polite_request_that_comes_twice_is_one) {
    for (const int number : {SIGTERM, SIGHUP}) {
        SCOPED_TRACE(number);
        {
            const Interrupts interrupts;
            int told = 0;
            const auto counted = interrupts.token().onCancel([&] { ++told; });
            std::raise(number); // by the session, which tells every process
            std::raise(number); // by the parent, which hands it on
            test::spinUntil([&] { return interrupts.token().isCancelled(); });
            std::raise(number);
            EXPECT_EQ(told, 1);
        }
        std::raise(number); // while the program ends
        std::signal(number, SIG_DFL);
    }
}

TEST(InterruptsTest, ctrl_c_is_heeded_the_second_time) {
    EXPECT_EXIT(
        {
            const Interrupts interrupts;
            std::raise(SIGINT);
            std::raise(SIGINT);
        },
        testing::KilledBySignal(SIGINT), "");
    const Interrupts interrupts;
    std::raise(SIGINT);
    test::spinUntil([&] { return interrupts.token().isCancelled(); });
}

} // namespace
} // namespace vorle
