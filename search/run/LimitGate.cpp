#include "search/run/LimitGate.h"

#include "agents/AgentError.h"

#include <variant>

namespace vorle {

bool LimitGate::isClosedBy(const std::exception &error) {
    const auto *agentError = dynamic_cast<const AgentError *>(&error);
    if (agentError == nullptr || !agentError->limit()) {
        return false;
    }
    const auto isDated = [](const std::optional<UsageLimit> &limit) {
        return limit && !std::holds_alternative<std::monostate>(limit->resets);
    };
    if (!m_limit || (!isDated(m_limit) && isDated(agentError->limit()))) {
        m_limit = agentError->limit();
        m_met = m_now();
    }
    return true;
}

} // namespace vorle
