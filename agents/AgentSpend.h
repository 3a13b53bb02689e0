#pragma once

#include <QtGlobal>

#include <optional>

namespace vorle {

/// What calls to an agent took, as far as the agent says.
struct AgentSpend {
    std::optional<double> costUSD; ///< US dollars, finite, 0 or more; only Claude Code tells
    std::optional<qint64> tokens;  ///< read and written, 0 or more

    AgentSpend &operator+=(const AgentSpend &other) {
        if (other.costUSD) {
            costUSD = costUSD.value_or(0) + *other.costUSD;
        }
        if (other.tokens) {
            tokens = tokens.value_or(0) + *other.tokens;
        }
        return *this;
    }
    bool operator==(const AgentSpend &) const = default;
};

} // namespace vorle
