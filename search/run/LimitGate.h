#pragma once

#include "agents/UsageLimit.h"

#include <QDateTime>

#include <exception>
#include <functional>
#include <optional>
#include <utility>

namespace vorle {

/// Stands before every call of a run: once the agent has reached its limit no further one starts;
/// those under way end as they will. Main thread.
class LimitGate {
public:
    bool isClosed() const { return m_limit.has_value(); }
    /// The limit that was met: the first one whose hour is known, else the first.
    const std::optional<UsageLimit> &limit() const { return m_limit; }
    /// When that limit was told: a run goes on for a while after it.
    const QDateTime &met() const { return m_met; }
    /// Has `now` asked for that moment; without it, it is this machine's.
    void readClock(std::function<QDateTime()> now) { m_now = std::move(now); }
    /// Closes where `error` is an agent's that reached its limit; false for any other failure.
    bool isClosedBy(const std::exception &error);

private:
    std::optional<UsageLimit> m_limit;
    QDateTime m_met;
    std::function<QDateTime()> m_now = [] { return QDateTime::currentDateTimeUtc(); };
};

} // namespace vorle
