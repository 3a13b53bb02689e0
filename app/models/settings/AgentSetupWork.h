#pragma once

#include "agents/setup/AgentSetup.h"

#include <QObject>
#include <QString>

#include <array>
#include <optional>

namespace vorle {

class LinkOpener;

/// What goes on in setting an agent up, or how that ended last.
struct SetupMoment {
    enum class Doing { Nothing, Installing, SigningIn };
    Doing doing = Doing::Nothing;
    int percent = -1; ///< of an installation, where that can be told
    /// Why the last try came to nothing, or what is doubtful of what it brought, a sentence.
    QString problem = {};
    QString detail = {}; ///< what the system said of it, a sentence
    /// What the agent is or was by that: of another the problem tells nothing.
    AgentReadiness about = AgentReadiness::Missing;
    QString page = {};    ///< where to confirm the sign-in that waits
    bool untaken = false; ///< no browser took that page

    bool operator==(const SetupMoment &) const = default;
};

/// Sets agents up for the screens: one thing at a time for each, which goes on whatever is shown.
/// Main thread; what it is given outlives it.
class AgentSetupWork final : public QObject {
    Q_OBJECT
public:
    AgentSetupWork(const AgentSetup &setup, LinkOpener &links, QObject *parent = nullptr);
    ~AgentSetupWork() override;

    const SetupMoment &moment(AgentKind kind) const { return state(kind).moment; }

    /// Installs the agent where it is missing, and has the user sign in where they are not. Nothing
    /// while it is at work on that one.
    void begin(AgentKind kind);
    /// Takes back what an installation left whose process was killed; nothing while it is at that,
    /// or at work.
    void recover();
    /// Ends what is under way; nothing is told of it.
    void stop(AgentKind kind);
    /// Looks at the agents again: forgets a problem of one that is no longer what it was, and ends
    /// a sign-in that waits where the user has signed in elsewhere.
    void look();
    /// Stops all, and waits for its end. Nothing is recovered after that.
    Task<> stopped();

Q_SIGNALS:
    void changed();
    /// An installation is further on, at that per cent; nothing else has changed.
    void progressed(vorle::AgentKind kind);
    /// An agent was installed, or signed in to; once for each, however what was under way ended.
    void succeeded();

private:
    struct State {
        SetupMoment moment;
        std::optional<CancelSource> cancel;             // of what is under way
        AgentReadiness known = AgentReadiness::Missing; // then, as far as it was told
        QString doubt = {};                             // of what was just installed
    };
    static constexpr std::size_t kinds = 2;

    State &state(AgentKind kind) { return m_states.at(static_cast<std::size_t>(kind)); }
    const State &state(AgentKind kind) const { return m_states.at(static_cast<std::size_t>(kind)); }
    void set(AgentKind kind, const SetupMoment &moment);
    void tellOfStep(AgentKind kind);
    void endSoon(AgentKind kind);
    Task<> install(AgentKind kind, CancelToken cancel);
    Task<> signIn(AgentKind kind, CancelToken cancel);
    Task<> see(AgentKind kind, Task<> work);
    void tell(AgentKind kind, const DownloadProgress &progress);
    void show(AgentKind kind, const WebLink &page);

    const AgentSetup &m_setup;
    LinkOpener &m_links;
    std::array<State, kinds> m_states;
    std::optional<CancelSource> m_recovering; // while it is at that
    bool m_isStopped = false;                 // what is begun would hold the end up
    TaskGroup m_work;                         // joined before this goes
};

} // namespace vorle
