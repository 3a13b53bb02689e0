#include "base/OnDisk.h"
#include "tests/support/Wait.h"

#include <QSemaphore>

#include <gtest/gtest.h>

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
    EXPECT_FALSE(endsOnDiskWithin([release] { release->acquire(); }, 20ms));
    EXPECT_TRUE(endsOnDiskWithin([] {}, 60s));
    EXPECT_FALSE(isDiskAwaited());
    release->release(hanging + 1);
    EXPECT_EQ(test::waitFor(onDisk([] { return 8; }, 60s)), 8);
}

} // namespace
} // namespace vorle
