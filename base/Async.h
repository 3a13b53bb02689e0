#pragma once

#include "base/Cancellation.h"

#include <QCoro/QCoroTask>
#include <QString>
#include <QThreadPool>

#include <chrono>
#include <coroutine>
#include <deque>
#include <exception>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace vorle {

template <class T = void>
using Task = QCoro::Task<T>;

/// Joins a callback to one waiting coroutine: `fire()` (any thread, idempotent) resumes whoever
/// does `co_await` on it, always from the main thread's event loop and never from inside the
/// callback, so that the callback's object may be deleted by what is resumed. Copies share one
/// state; one coroutine may wait.
class OneShot {
public:
    OneShot() : m_state(std::make_shared<State>()) {}

    void fire() const;

    bool await_ready() const noexcept { return m_state->fired; }
    void await_suspend(std::coroutine_handle<> waiting) const noexcept {
        m_state->waiting = waiting;
    }
    void await_resume() const noexcept {}

private:
    struct State {
        bool fired = false; // read and written on the main thread alone
        std::coroutine_handle<> waiting;
    };
    std::shared_ptr<State> m_state;
};

/// Waits without holding the thread. @throws Cancelled as soon as `cancel` is.
Task<> sleepFor(std::chrono::milliseconds duration, CancelToken cancel = {});

/// The task with what it throws logged under `what`, except Cancelled: it throws nothing.
Task<> logged(Task<> task, QString what);

/// Lets a task run on by itself, logged. What it uses must live as long as the application; where
/// it does not, a TaskGroup waits for it.
void detach(Task<> task, QString what);

/// Waits for a step after which others must still be waited for: keeps in `fault` what it threw,
/// unless something is kept there already. `fault` must stay until the wait has ended.
Task<> settle(Task<> step, std::exception_ptr &fault);

/// Tasks that use one object and are waited for together: the object joins them before it goes.
/// A group that goes first lets its tasks run on. Main thread.
class TaskGroup {
public:
    TaskGroup() : m_state(std::make_shared<State>()) {}

    /// Takes a task that has started.
    void add(Task<> task);
    bool isEmpty() const { return m_state->underWay == 0; }
    /// Ends once every task has, those that are added meanwhile too. Several may wait; the first of
    /// them is told of a failure. @throws what the first task to fail since the last join threw
    Task<> join();

private:
    struct State {
        qsizetype underWay = 0;
        std::exception_ptr firstError;
        std::vector<OneShot> joining;
    };
    static Task<> watch(std::shared_ptr<State> state, Task<> task);

    std::shared_ptr<State> m_state;
};

/// Runs `work(0)` … `work(count - 1)`, at most `atOnce` at a time, in order of start. When one
/// throws, no further one starts; once those under way have ended the first exception is thrown.
Task<> forEachBounded(qsizetype count, qsizetype atOnce, std::function<Task<>(qsizetype)> work);

/// Runs a pure function on the thread pool and gives its value on the main thread. `function` must
/// not touch main-thread objects. @throws what `function` throws
template <class Function, class Result = std::invoke_result_t<Function>>
Task<Result> onPool(Function function) {
    struct Job {
        Function function;
        std::optional<Result> result;
        std::exception_ptr fault;
    };
    auto job = std::make_shared<Job>(Job{std::move(function), std::nullopt, nullptr});
    OneShot done;
    QThreadPool::globalInstance()->start([job, done] {
        try {
            job->result.emplace(job->function());
        } catch (...) {
            job->fault = std::current_exception();
        }
        done.fire();
    });
    co_await done;
    if (job->fault) {
        std::rethrow_exception(job->fault);
    }
    co_return std::move(*job->result);
}

/// Hands out a number of permits, first come, first served. Main thread only; must outlive every
/// wait and every permit.
class Gate {
public:
    /// A permit, given back when it goes.
    class Permit {
    public:
        explicit Permit(Gate *gate) : m_gate(gate) {}
        Permit(Permit &&other) noexcept : m_gate(std::exchange(other.m_gate, nullptr)) {}
        Permit &operator=(Permit &&other) noexcept {
            std::swap(m_gate, other.m_gate);
            return *this;
        }
        Permit(const Permit &) = delete;
        Permit &operator=(const Permit &) = delete;
        ~Permit() {
            if (m_gate != nullptr) {
                m_gate->leave();
            }
        }

    private:
        Gate *m_gate;
    };

    explicit Gate(int permits) : m_free(permits) {}
    /// @throws Cancelled when `cancel` is, before or during the wait.
    Task<Permit> enter(CancelToken cancel = {});

private:
    void leave();

    int m_free;
    std::deque<OneShot> m_waiting;
};

} // namespace vorle
