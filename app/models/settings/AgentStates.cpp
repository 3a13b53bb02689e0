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
    connect(&m_work, &AgentSetupWork::progressed, this, &AgentStates::showProgress);
    connect(&m_work, &AgentSetupWork::succeeded, this, &AgentStates::setUp);
    if (m_parts.settable) {
        m_work.recover();
    }
}

/// A hundred times in a download: the agents' files are not read for it.
void AgentStates::showProgress(AgentKind kind) {
    const auto row = std::ranges::find(m_states, json::rawText(kind), &AgentState::kind);
    if (row != m_states.end() && row->installing) {
        row->percent = m_work.moment(kind).percent;
        row->text = shownWords(installingText(row->percent));
        Q_EMIT changed();
    }
}

QVariantList AgentStates::rows() const { return variants(m_states); }

bool AgentStates::isReady() const {
    return std::ranges::any_of(m_states,
                               [](const AgentState &state) { return state.chosen && state.ready; });
}

bool AgentStates::isWorking() const { return std::ranges::any_of(m_states, &AgentState::working); }

bool AgentStates::isInstalling() const {
    return std::ranges::any_of(m_states, &AgentState::installing);
}

void AgentStates::refresh() {
    m_work.look();
    if (m_parts.settable) {
        m_work.recover();
    }
    QList<AgentState> fresh = look();
    if (fresh != m_states) {
        m_states = std::move(fresh);
        Q_EMIT changed();
    }
}

void AgentStates::act(const QString &kind, const QString &action) {
    refresh(); // it may have been installed, or signed in to, meanwhile
    const auto agent = json::fromRaw<AgentKind>(kind);
    const auto row = std::ranges::find(m_states, kind, &AgentState::kind);
    if (!agent || row == m_states.end() || action.isEmpty() || row->action != action) {
        return;
    }
    if (row->working) {
        m_work.stop(*agent);
    } else {
        m_work.begin(*agent);
    }
    refresh();
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
    const bool installing = moment.doing == Doing::Installing;
    // Signed in elsewhere, nothing is waited for.
    const bool signingIn = moment.doing == Doing::SigningIn && readiness != AgentReadiness::Ready;
    AgentState state{.kind = json::rawText(kind),
                     .name = displayName(kind),
                     .state = readinessLabel(readiness),
                     .page = signingIn ? moment.page : QString(),
                     .working = installing || signingIn,
                     .installing = installing,
                     .percent = moment.percent};
    if (installing) {
        state.text = installingText(moment.percent);
        state.note = installingNote();
    } else if (signingIn) {
        state.text =
            moment.untaken
                ? tr("Je n’ai pas pu ouvrir ton navigateur\u00A0: ouvre toi-même la page de "
                     "connexion, puis valide.")
                : signInPageText();
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
