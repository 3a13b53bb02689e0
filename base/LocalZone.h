#pragma once

#include <QTimeZone>

#include <functional>
#include <utility>

namespace vorle {

/// The zone that the user's clocks show. It is asked for each time, never kept: people travel while
/// the program is open. Stands wherever a QTimeZone is taken.
class LocalZone {
public:
    /// The system's.
    LocalZone() : m_ask(QTimeZone::systemTimeZone) {}
    /// Always that one.
    LocalZone(const QTimeZone &fixed) : m_ask([fixed] { return fixed; }) {}
    /// The one that `ask` gives.
    explicit LocalZone(std::function<QTimeZone()> ask) : m_ask(std::move(ask)) {}

    QTimeZone now() const { return m_ask(); }
    operator QTimeZone() const { return m_ask(); }

private:
    std::function<QTimeZone()> m_ask;
};

} // namespace vorle
