#include "base/Async.h"
#include "base/Log.h"

#include <QCoreApplication>
#include <QTimer>

#include <exception>
#include <vector>

namespace vorle {

void OneShot::fire() const {
    QMetaObject::invokeMethod(
        QCoreApplication::instance(),
        [state = m_state] {
            if (state->fired) {
                return;
            }
            state->fired = true;
            if (state->waiting) {
                std::exchange(state->waiting, nullptr).resume();
            }
        },
        Qt::QueuedConnection);
}

Task<> sleepFor(std::chrono::milliseconds duration, CancelToken cancel) {
    cancel.throwIfCancelled();
    OneShot woken;
    QTimer timer;
    timer.setSingleShot(true);
    timer.setTimerType(Qt::PreciseTimer); // a coarse one may come before its time
    QObject::connect(&timer, &QTimer::timeout, &timer, [woken] { woken.fire(); });
    const auto registration = cancel.onCancel([woken] { woken.fire(); });
    timer.start(duration);
    co_await woken;
    cancel.throwIfCancelled();
}

namespace {

struct Batch {
    qsizetype next = 0;
    qsizetype count = 0;
    std::function<Task<>(qsizetype)> work;
    std::exception_ptr firstError;
};

Task<> batchWorker(std::shared_ptr<Batch> batch) {
    while (!batch->firstError && batch->next < batch->count) {
        const qsizetype index = batch->next++;
        try {
            co_await batch->work(index);
        } catch (...) {
            if (!batch->firstError) {
                batch->firstError = std::current_exception();
            }
        }
    }
}

} // namespace

Task<> logged(Task<> task, QString what) {
    try {
        co_await task;
    } catch (const Cancelled &) {
        // Somebody asked for the stop: nothing to tell.
    } catch (const std::exception &error) {
        logLine(what + QStringLiteral(": ") + QString::fromUtf8(error.what()));
    }
}

void detach(Task<> task, QString what) { logged(std::move(task), std::move(what)); }

Task<> settle(Task<> step, std::exception_ptr &fault) {
    try {
        co_await step;
    } catch (...) {
        fault = fault ? fault : std::current_exception();
    }
}

void TaskGroup::add(Task<> task) {
    ++m_state->underWay;
    watch(m_state, std::move(task));
}

Task<> TaskGroup::watch(std::shared_ptr<State> state, Task<> task) {
    co_await settle(std::move(task), state->firstError);
    if (--state->underWay == 0) {
        for (const OneShot &waiting : std::exchange(state->joining, {})) {
            waiting.fire();
        }
    }
}

Task<> TaskGroup::join() {
    const std::shared_ptr<State> state = m_state;
    while (state->underWay > 0) {
        const OneShot over;
        state->joining.push_back(over);
        co_await over;
    }
    if (const std::exception_ptr error = std::exchange(state->firstError, nullptr)) {
        std::rethrow_exception(error);
    }
}

Task<> forEachBounded(qsizetype count, qsizetype atOnce, std::function<Task<>(qsizetype)> work) {
    auto batch = std::make_shared<Batch>(Batch{0, count, std::move(work), nullptr});
    std::vector<Task<>> workers;
    for (qsizetype i = 0; i < std::min(count, atOnce); ++i) {
        workers.push_back(batchWorker(batch));
    }
    for (auto &worker : workers) {
        co_await worker;
    }
    if (batch->firstError) {
        std::rethrow_exception(batch->firstError);
    }
}

Task<Gate::Permit> Gate::enter(CancelToken cancel) {
    cancel.throwIfCancelled();
    if (m_free > 0) {
        --m_free;
        co_return Permit(this);
    }
    OneShot turn;
    m_waiting.push_back(turn);
    // A cancelled wait keeps its turn in the queue until it comes, then passes it on at once.
    co_await turn;
    Permit pass(this);
    cancel.throwIfCancelled();
    co_return pass;
}

void Gate::leave() {
    if (m_waiting.empty()) {
        ++m_free;
        return;
    }
    const OneShot next = m_waiting.front();
    m_waiting.pop_front();
    next.fire();
}

} // namespace vorle
