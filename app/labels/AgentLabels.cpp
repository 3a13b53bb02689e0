#include "app/labels/AgentLabels.h"

#include "base/French.h"

namespace vorle {

QString readinessLabel(AgentReadiness readiness) {
    switch (readiness) {
    case AgentReadiness::Ready:
        return French::tr("prêt");
    case AgentReadiness::SignedOut:
        return French::tr("déconnecté");
    case AgentReadiness::Missing:
        return French::tr("introuvable");
    }
    return {};
}

} // namespace vorle
