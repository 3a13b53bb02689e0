#include "app/models/settings/AgentStates.h"

#include "app/labels/AgentLabels.h"
#include "app/labels/Wording.h"
#include "app/models/ListParts.h"
#include "base/Json.h"
#include "platform/Pasteboard.h"

#include <algorithm>
#include <utility>

namespace vorle {

AgentStates::AgentStates(const Parts &parts, QObject *parent)
    : QObject(parent), m_parts(parts), m_work(parts.setup, parts.links), m_states(look()) {
    connect(&m_parts.preferences, &Preferences::changed, this, [this](const QString &key) {
        if (Preferences::isKeyOf(key, &Settings::agent)) {
            refresh();
        }
    });
    connect(&m_work, &AgentSetupWork::changed, this, &AgentStates::refresh);
    connect(&m_work, &AgentSetupWork::succeeded, this, &AgentStates::setUp);
    if (m_parts.settable) {
        m_work.recover();
    }
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

void AgentStates::act(const QString &kind) {
    const auto agent = json::fromRaw<AgentKind>(kind);
    if (!agent || !m_parts.settable) {
        return;
    }
    if (m_work.moment(*agent).doing != SetupMoment::Doing::Nothing) {
        m_work.stop(*agent);
    } else {
        m_work.begin(*agent);
    }
    refresh(); // it may be ready by now
}

void AgentStates::copyPage(const QString &kind) {
    if (const auto agent = json::fromRaw<AgentKind>(kind)) {
        m_parts.pasteboard.replace(m_work.moment(*agent).page);
    }
}

AgentState AgentStates::looked(AgentKind kind) const {
    using Doing = SetupMoment::Doing;
    const SetupMoment &moment = m_work.moment(kind);
    const AgentReadiness readiness = m_parts.agents.readiness(kind);
    AgentState state{.kind = json::rawText(kind),
                     .name = displayName(kind),
                     .state = readinessLabel(readiness),
                     .page = moment.page,
                     .working = moment.doing != Doing::Nothing,
                     .installing = moment.doing == Doing::Installing,
                     .percent = moment.percent};
    if (state.installing) {
        state.text = installingText(moment.percent);
        state.note = installingNote();
    } else if (state.working) {
        state.text =
            state.page.isEmpty()
                ? signInPageText()
                : tr("Je n’ai pas pu ouvrir ton navigateur\u00A0: ouvre toi-même la page de "
                     "connexion, puis valide.");
    } else if (readiness == AgentReadiness::Ready) {
        state.text = agentReadyText(kind);
        state.note = quotaText();
        state.ready = true;
    } else {
        const bool missing = readiness == AgentReadiness::Missing;
        state.text = missing ? installOfferText(kind) : signInConsentText(kind);
        state.action = missing ? tr("Installer") : tr("Me connecter");
        state.problem = moment.problem;
        if (!moment.detail.isEmpty()) {
            state.problem += u'\n' + moment.detail;
        }
    }
    state.action = !m_parts.settable ? QString() : state.working ? tr("Arrêter") : state.action;
    for (QString *words : {&state.text, &state.note, &state.problem}) {
        *words = shownWords(*words);
    }
    return state;
}

QList<AgentState> AgentStates::look() const {
    const AgentKind chosen = m_parts.agents.choose();
    QList<AgentState> states;
    for (const AgentKind kind : {AgentKind::Claude, AgentKind::Codex}) {
        AgentState state = looked(kind);
        state.chosen = kind == chosen;
        states += state;
    }
    return states;
}

} // namespace vorle
