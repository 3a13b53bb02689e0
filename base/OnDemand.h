#pragma once

#include <functional>
#include <utility>

namespace vorle {

/// What may be needed later, or not at all: made the first time it is asked for, by whoever owns it
/// and outlives this. Opening what it stands for may read a file, take a lock or reach for the
/// network, so that who only may need it is given this in its place. Copies ask for the same one.
template <class T>
class OnDemand {
public:
    explicit OnDemand(std::function<T &()> ask) : m_ask(std::move(ask)) {}

    /// @throws what making it throws
    T &operator*() const { return m_ask(); }
    T *operator->() const { return &m_ask(); }

private:
    std::function<T &()> m_ask;
};

} // namespace vorle
