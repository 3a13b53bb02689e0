#include "app/models/settings/AgentSetupWork.h"

#include "agents/AgentError.h"
#include "app/labels/AgentLabels.h"
#include "base/Log.h"
#include "base/SystemErrorText.h"
#include "platform/LinkOpener.h"

#include <QTimer>

#include <algorithm>
#include <system_error>
#include <utility>

namespace vorle {

AgentSetupWork::AgentSetupWork(const AgentSetup &setup, LinkOpener &links, QObject *parent)
    : QObject(parent), m_setup(setup), m_links(links) {}

AgentSetupWork::~AgentSetupWork() = default;

void AgentSetupWork::set(AgentKind kind, const SetupMoment &moment) {
    if (state(kind).moment != moment) {
        state(kind).moment = moment;
        Q_EMIT changed();
    }
}

void AgentSetupWork::begin(AgentKind kind) {
    const AgentReadiness readiness = m_setup.agents().readiness(kind);
    if (state(kind).cancel || readiness == AgentReadiness::Ready) {
        return;
    }
    using Doing = SetupMoment::Doing;
    const bool missing = readiness == AgentReadiness::Missing;
    state(kind).known = readiness;
    const CancelToken token = state(kind).cancel.emplace().token();
    set(kind, {.doing = missing ? Doing::Installing : Doing::SigningIn});
    m_work.add(see(kind, missing ? install(kind, token) : signIn(kind, token)));
}

void AgentSetupWork::stop(AgentKind kind) {
    if (state(kind).cancel) {
        // A callback of the token may end the work, and with it the source.
        CancelSource source = *state(kind).cancel;
        source.cancel();
    }
}

void AgentSetupWork::recover() {
    const auto isAtWork = [](const State &state) { return state.cancel.has_value(); };
    if (m_isStopped || m_recovering || std::ranges::any_of(m_states, isAtWork)) {
        return;
    }
    const auto recovered = [](AgentSetupWork *self, CancelToken cancel) -> Task<> {
        bool isMended = false;
        try {
            isMended = co_await self->m_setup.recover(std::move(cancel));
        } catch (const Cancelled &) {
            // It is there for the next start.
        }
        self->m_recovering.reset();
        if (isMended) {
            Q_EMIT self->changed();
        }
    };
    const CancelToken token = m_recovering.emplace().token();
    m_work.add(logged(recovered(this, token), QStringLiteral("setting an agent up")));
}

void AgentSetupWork::look() {
    for (const AgentKind kind : {AgentKind::Claude, AgentKind::Codex}) {
        const AgentReadiness readiness = m_setup.agents().readiness(kind);
        const SetupMoment &now = moment(kind);
        if (now.doing == SetupMoment::Doing::Nothing && readiness != now.about &&
            !now.problem.isEmpty()) {
            set(kind, {});
        } else if (now.doing == SetupMoment::Doing::SigningIn &&
                   readiness == AgentReadiness::Ready &&
                   state(kind).known != AgentReadiness::Ready) {
            endSoon(kind);
            tellOfStep(kind);
        }
    }
}

/// Ends a login that waits for what has been done elsewhere. It may also be our own that has just
/// been confirmed: that one has its page and its files still to finish, and ends by itself.
void AgentSetupWork::endSoon(AgentKind kind) {
    constexpr std::chrono::seconds toFinish(3);
    QTimer::singleShot(toFinish, this, [login = *state(kind).cancel]() mutable { login.cancel(); });
}

/// Tells of an agent that is nearer to working than it was when the work on it began.
void AgentSetupWork::tellOfStep(AgentKind kind) {
    const AgentReadiness now = m_setup.agents().readiness(kind);
    if (now < std::exchange(state(kind).known, now)) { // Ready comes first
        Q_EMIT succeeded();
    }
}

Task<> AgentSetupWork::stopped() {
    m_isStopped = true;
    stop(AgentKind::Claude);
    stop(AgentKind::Codex);
    if (m_recovering) {
        CancelSource source = *m_recovering; // a callback of the token may end it
        source.cancel();
    }
    co_await m_work.join();
}

/// Awaits the work, and tells how it ended.
Task<> AgentSetupWork::see(AgentKind kind, Task<> work) {
    const bool installing = moment(kind).doing == SetupMoment::Doing::Installing;
    SetupMoment after{.about = state(kind).known};
    try {
        co_await work;
        after.problem = std::exchange(state(kind).doubt, QString());
        after.about = m_setup.agents().readiness(kind);
    } catch (const Cancelled &) {
        // The person asked for it, and sees it.
    } catch (const SetupError &error) {
        after.problem = installFailureText(error, kind);
    } catch (const std::system_error &error) {
        after.problem = installing ? installFailureText() : signInFailureText();
        after.detail = systemRefusalText(error);
    } catch (const AgentError &error) {
        after.problem = error.text();
    } catch (const std::exception &error) {
        logLine(QStringLiteral("setting an agent up: ") + QString::fromUtf8(error.what()));
        after.problem = installing ? installFailureText() : signInFailureText();
    }
    state(kind).cancel.reset();
    set(kind, after);
    // Stopped or failed, it may have done its work all the same.
    tellOfStep(kind);
}

Task<> AgentSetupWork::install(AgentKind kind, CancelToken cancel) {
    const Installed installed = co_await m_setup.install(
        kind, [this, kind](const DownloadProgress &progress) { tell(kind, progress); }, cancel);
    state(kind).doubt =
        installDoubtText(installed.end, kind, m_setup.agents().locate(kind).value_or(QString()));
}

Task<> AgentSetupWork::signIn(AgentKind kind, CancelToken cancel) {
    const bool signedIn = co_await m_setup.signIn(
        kind, [this, kind](const WebLink &page) { show(kind, page); }, cancel);
    if (!signedIn) {
        throw AgentError::message(signInFailureText());
    }
}

void AgentSetupWork::tell(AgentKind kind, const DownloadProgress &progress) {
    const int before = std::exchange(state(kind).moment.percent, installPercent(progress));
    if (moment(kind).percent != before) {
        Q_EMIT progressed(kind);
    }
}

void AgentSetupWork::show(AgentKind kind, const WebLink &page) {
    SetupMoment now = moment(kind);
    now.page = page.text();
    now.untaken = !m_links.open(page);
    set(kind, now);
}

} // namespace vorle
