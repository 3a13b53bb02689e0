#include "base/Async.h"
#include "tests/support/Wait.h"

#include <QElapsedTimer>
#include <QTimer>

#include <gtest/gtest.h>

#include <vector>

namespace vorle {
namespace {

using namespace std::chrono_literals;

TEST(Async, sleeping_lets_the_loop_turn_and_stops_when_cancelled) {
    int turns = 0;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, [&] { ++turns; });
    timer.start(5ms);
    test::waitFor(sleepFor(60ms));
    EXPECT_GE(turns, 3);

    CancelSource source;
    QTimer::singleShot(10ms, [&] { source.cancel(); });
    QElapsedTimer elapsed;
    elapsed.start();
    EXPECT_THROW(test::waitFor(sleepFor(20s, source.token())), Cancelled);
    EXPECT_LT(elapsed.elapsed(), 10'000);
    EXPECT_THROW(test::waitFor(sleepFor(20s, source.token())), Cancelled);
}

TEST(Async, no_wait_ends_before_its_time) {
    std::vector<Task<>> sleeps;
    const auto sleep = [](std::chrono::milliseconds time) -> Task<> {
        QElapsedTimer clock;
        clock.start();
        co_await sleepFor(time);
        EXPECT_GE(clock.elapsed(), time.count() - 1);
    };
    for (int i = 0; i < 40; ++i) {
        sleeps.push_back(sleep(std::chrono::milliseconds(101 + 7 * i)));
    }
    for (Task<> &task : sleeps) {
        test::waitFor(std::move(task));
    }
}

TEST(Async, pool_work_comes_back_to_the_main_thread) {
    const auto *mainThread = QThread::currentThread();
    const auto work = []() -> Task<std::pair<QThread *, QThread *>> {
        QThread *worker = co_await onPool([] { return QThread::currentThread(); });
        co_return std::pair(worker, QThread::currentThread());
    };
    const auto [worker, after] = test::waitFor(work());
    EXPECT_NE(worker, mainThread);
    EXPECT_EQ(after, mainThread);
    const auto failing = []() -> Task<int> {
        co_return co_await onPool([]() -> int { throw std::runtime_error("in the pool"); });
    };
    EXPECT_THROW(test::waitFor(failing()), std::runtime_error);
}

TEST(Async, bounded_work_keeps_to_its_width_and_order) {
    int under = 0;
    int most = 0;
    QList<qsizetype> started;
    const auto one = [&](qsizetype index) -> Task<> {
        started.append(index);
        most = std::max(most, ++under);
        co_await sleepFor(5ms);
        --under;
    };
    test::waitFor(forEachBounded(9, 3, one));
    EXPECT_EQ(most, 3);
    EXPECT_EQ(started, (QList<qsizetype>{0, 1, 2, 3, 4, 5, 6, 7, 8}));
}

TEST(Async, bounded_work_stops_taking_new_items_once_one_throws) {
    int ended = 0;
    int started = 0;
    const auto one = [&](qsizetype index) -> Task<> {
        ++started;
        co_await sleepFor(index == 1 ? 1ms : 20ms);
        ++ended;
        if (index == 1) {
            throw std::runtime_error("one");
        }
    };
    EXPECT_THROW(test::waitFor(forEachBounded(10, 2, one)), std::runtime_error);
    EXPECT_EQ(started, 2);
    EXPECT_EQ(ended, 2);
}

TEST(Async, a_gate_serves_in_order_and_survives_a_cancelled_wait) {
    Gate gate(1);
    CancelSource giveUp;
    QStringList order;
    const auto visit = [&](QString name, CancelToken token) -> Task<> {
        try {
            const auto pass = co_await gate.enter(token);
            order.append(name);
            co_await sleepFor(5ms);
        } catch (const Cancelled &) {
            order.append(name + QStringLiteral(" gave up"));
        }
    };
    auto first = visit(QStringLiteral("a"), {});
    auto second = visit(QStringLiteral("b"), giveUp.token());
    auto third = visit(QStringLiteral("c"), {});
    giveUp.cancel();
    test::waitFor(std::move(third));
    EXPECT_EQ(order,
              (QStringList{QStringLiteral("a"), QStringLiteral("b gave up"), QStringLiteral("c")}));
}

TEST(Async, a_group_waits_for_all_and_tells_the_first_failure) {
    QStringList ended;
    const auto work = [&](QString name, std::chrono::milliseconds time, bool fails) -> Task<> {
        co_await sleepFor(time);
        ended += name;
        if (fails) {
            throw std::runtime_error(name.toStdString());
        }
    };
    TaskGroup group;
    const auto addLate = [&]() -> Task<> {
        co_await sleepFor(10ms);
        group.add(work(QStringLiteral("late"), 30ms, true));
    };
    test::waitFor(group.join()); // nothing to wait for
    group.add(work(QStringLiteral("slow"), 60ms, true));
    group.add(work(QStringLiteral("quick"), 1ms, true));
    group.add(addLate());
    auto first = group.join();
    auto second = group.join();
    try {
        test::waitFor(std::move(first));
        ADD_FAILURE() << "the failure was lost";
    } catch (const std::runtime_error &error) {
        EXPECT_STREQ(error.what(), "quick");
    }
    test::waitFor(std::move(second));
    EXPECT_EQ(ended, (QStringList{QStringLiteral("quick"), QStringLiteral("late"),
                                  QStringLiteral("slow")}));
    EXPECT_TRUE(group.isEmpty());
    test::waitFor(group.join()); // told once
}

TEST(Async, a_group_that_goes_lets_its_tasks_run_on) {
    OneShot over;
    {
        TaskGroup group;
        group.add([](OneShot done) -> Task<> {
            co_await sleepFor(5ms);
            done.fire();
        }(over));
    }
    const auto waits = [&]() -> Task<> { co_await over; };
    test::waitFor(waits());
}

TEST(Cancellation, callbacks_run_once_and_a_dropped_one_never) {
    CancelSource source;
    int kept = 0;
    int dropped = 0;
    const auto registration = source.token().onCancel([&] { ++kept; });
    {
        const auto gone = source.token().onCancel([&] { ++dropped; });
    }
    source.cancel();
    source.cancel();
    const auto late = source.token().onCancel([&] { ++kept; });
    EXPECT_EQ(kept, 2);
    EXPECT_EQ(dropped, 0);
    EXPECT_FALSE(CancelToken().isCancelled());
}

} // namespace
} // namespace vorle
