#pragma once

#include "agents/AgentLocator.h"

#include <QString>

namespace vorle {

/// Whether an agent can work, in a word: "prêt", "déconnecté", "introuvable". Pure, any thread.
QString readinessLabel(AgentReadiness readiness);

} // namespace vorle
