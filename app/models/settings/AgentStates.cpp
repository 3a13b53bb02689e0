#include "app/models/settings/AgentStates.h"

#include "app/labels/AgentLabels.h"
#include "app/labels/Wording.h"
#include "app/models/ListParts.h"

#include <algorithm>
#include <utility>

namespace vorle {

namespace {

QString readyText(AgentKind kind) {
    return kind == AgentKind::Claude ? AgentStates::tr("Je fouillerai avec ton abonnement Claude.")
                                     : AgentStates::tr("Je fouillerai avec ton compte ChatGPT.");
}

/// What to do so that it can work; both ways lead through its own command.
QString helpText(AgentKind kind, AgentReadiness readiness) {
    if (readiness == AgentReadiness::SignedOut) {
        return AgentStates::tr(
                   "Ouvre un terminal, lance «\u202F%1\u202F» et connecte-toi, puis reviens\u00A0: "
                   "je le vois tout de suite.")
            .arg(json::rawText(kind));
    }
    return (kind == AgentKind::Claude ? AgentStates::tr("Avec un abonnement Claude, Pro ou plus.")
                                      : AgentStates::tr("Avec un compte ChatGPT, même gratuit.")) +
           u' ' + AgentStates::tr("Installe %1, puis reviens.").arg(displayName(kind));
}

} // namespace

AgentStates::AgentStates(const AgentLocator &agents, Preferences &preferences, QObject *parent)
    : QObject(parent), m_agents(agents), m_states(look()) {
    connect(&preferences, &Preferences::changed, this, [this](const QString &key) {
        if (Preferences::isKeyOf(key, &Settings::agent)) {
            refresh();
        }
    });
}

QVariantList AgentStates::rows() const { return variants(m_states); }

bool AgentStates::isReady() const {
    return std::ranges::any_of(m_states,
                               [](const AgentState &state) { return state.chosen && state.ready; });
}

void AgentStates::refresh() {
    QList<AgentState> fresh = look();
    if (fresh != m_states) {
        m_states = std::move(fresh);
        Q_EMIT changed();
    }
}

QList<AgentState> AgentStates::look() const {
    const AgentKind chosen = m_agents.choose();
    QList<AgentState> states;
    for (const AgentKind kind : {AgentKind::Claude, AgentKind::Codex}) {
        const AgentReadiness readiness = m_agents.readiness(kind);
        const bool ready = readiness == AgentReadiness::Ready;
        states +=
            AgentState{.kind = json::rawText(kind),
                       .name = displayName(kind),
                       .state = readinessLabel(readiness),
                       .text = shownWords(ready ? readyText(kind) : helpText(kind, readiness)),
                       .ready = ready,
                       .chosen = kind == chosen};
    }
    return states;
}

} // namespace vorle
