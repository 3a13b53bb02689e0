#pragma once

#include "agents/Ask.h"
#include "search/RunPlan.h"

#include <QList>
#include <QString>

namespace vorle {

/// One link the agent proposes, with the keys of its answer.
struct Candidate {
    QString title;
    QString url;
    QString kind;  ///< normally an ItemKind's raw string
    QString about; ///< the declared topic, tool, dependency or project it answers

    static constexpr auto jsonFields() {
        return std::tuple(
            json::field("title", &Candidate::title), json::field("url", &Candidate::url),
            json::field("kind", &Candidate::kind), json::field("about", &Candidate::about));
    }
    bool operator==(const Candidate &) const = default;
};

/// Asks the agent for candidates. Main thread; the asker must outlive every call under way.
class Pipeline {
public:
    struct Found {
        QList<Candidate> candidates;
        int refused = 0; ///< answers whose link is no web address
        std::optional<double> costUSD;
    };

    explicit Pipeline(Asker &asker) : m_asker(&asker) {}

    /// The question a scope's call sends, for the agent that would be asked.
    /// @throws AgentError when the instruction is missing
    Question question(const PlannedScope &planned, AgentKind agent) const;

    /// The candidates of one scope, titles and links tidied.
    /// @throws AgentError, std::system_error, Cancelled
    Task<Found> candidates(PlannedScope planned, AgentKind agent, CancelToken cancel);

private:
    Asker *m_asker;
};

} // namespace vorle
