#pragma once

#include "agents/UsageLimit.h"

#include <exception>
#include <optional>

namespace vorle {

/// Stands before every call of a run: once the agent has reached its limit no further one starts;
/// those under way end as they will. Main thread.
class LimitGate {
public:
    bool isClosed() const { return m_limit.has_value(); }
    /// The limit that was met: the first one whose hour is known, else the first.
    const std::optional<UsageLimit> &limit() const { return m_limit; }
    /// Closes where `error` is an agent's that reached its limit; false for any other failure.
    bool isClosedBy(const std::exception &error);

private:
    std::optional<UsageLimit> m_limit;
};

} // namespace vorle
