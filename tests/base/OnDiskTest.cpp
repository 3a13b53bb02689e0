#include "base/OnDisk.h"
#include "tests/support/Wait.h"

#include <QSemaphore>

#include <gtest/gtest.h>

#include <thread>
#include <vector>

namespace vorle {
namespace {

using namespace std::chrono_literals;

// A disk that is gone may hold up as many threads as there are: what is asked of another one is
// answered all the same, while those still hang and after they were given up.
TEST(OnDisk, what_hangs_is_given_up_and_holds_nothing_else_up) {
    constexpr int hanging = 20;
    auto release = std::make_shared<QSemaphore>();
    const auto hang = [&](std::chrono::milliseconds limit) {
        return onDisk(
            [release] {
                release->acquire();
                return 1;
            },
            limit);
    };
    std::vector<Task<std::optional<int>>> hung;
    for (int i = 0; i < hanging; ++i) {
        hung.push_back(hang(2s));
    }
    EXPECT_EQ(test::waitFor(onDisk([] { return 6; }, 60s)), 6) << "while they hang";
    for (auto &task : hung) {
        EXPECT_EQ(test::waitFor(std::move(task)), std::nullopt);
    }
    EXPECT_EQ(test::waitFor(onDisk([] { return 7; }, 60s)), 7) << "after they were given up";
    EXPECT_FALSE(isDiskAwaited());
    release->release(hanging);
    EXPECT_EQ(test::waitFor(onDisk([] { return 8; }, 60s)), 8);
}

// A stop does not wait for a disk that is gone; what still runs there is told, and left.
TEST(OnDisk, a_stop_ends_the_wait_at_once) {
    auto release = std::make_shared<QSemaphore>();
    auto begun = std::make_shared<QSemaphore>();
    auto told = std::make_shared<QSemaphore>();
    CancelSource stop;
    auto hung = onDisk(
        [release, begun, told](DiskPulse &pulse) {
            begun->release();
            release->acquire();
            told->release(pulse.isStopped() ? 1 : 0);
            return 1;
        },
        600s, stop.token());
    begun->acquire();
    stop.cancel();
    EXPECT_THROW(test::waitFor(std::move(hung)), Cancelled);
    EXPECT_THROW(test::waitFor(onDisk([] { return 1; }, 600s, stop.token())), Cancelled);
    EXPECT_FALSE(isDiskAwaited());
    release->release();
    EXPECT_TRUE(told->tryAcquire(1, 60'000));
}

// What takes long is waited for as long as it gives signs of life, and no longer.
TEST(OnDisk, signs_of_life_keep_the_wait_going) {
    constexpr auto patience = 1s;
    const auto beats = [](std::chrono::milliseconds whole) {
        return [whole](DiskPulse &pulse) {
            const auto start = std::chrono::steady_clock::now();
            while (!pulse.isStopped() && std::chrono::steady_clock::now() - start < whole) {
                pulse.beat();
                std::this_thread::sleep_for(20ms);
            }
            return pulse.isStopped();
        };
    };
    EXPECT_EQ(test::waitFor(onDisk(beats(patience + 200ms), patience)), false);
    auto release = std::make_shared<QSemaphore>();
    const auto falls = [release](DiskPulse &pulse) {
        pulse.beat();
        release->acquire();
        return true;
    };
    EXPECT_EQ(test::waitFor(onDisk(falls, 50ms)), std::nullopt);
    release->release();
}

} // namespace
} // namespace vorle
