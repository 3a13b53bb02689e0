#pragma once

#include "agents/Ask.h"
#include "search/run/RunPlan.h"

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

/// What digging for one unreadable link gave, with the keys of the answer.
struct Dug {
    QString id;
    bool found = false;
    QString url; ///< a readable page on the same subject
    QString title;
    QString what; ///< what that page says, in the agent's words

    static constexpr auto jsonFields() {
        return std::tuple(json::field("id", &Dug::id), json::field("found", &Dug::found),
                          json::field("url", &Dug::url), json::field("title", &Dug::title),
                          json::field("what", &Dug::what));
    }
    bool operator==(const Dug &) const = default;
};

/// One unreadable link to dig for.
struct DigItem {
    QString id;
    QString title;
    QString url;
    QString about;
};

/// What fills the instruction for digging besides the items.
struct DigFrame {
    QDate today;
    QStringList exclusions; ///< sites and folders that are no source
    AgentKind agent = AgentKind::Claude;
};

/// Asks the agent for candidates, for what stands behind unreadable links, and for the items of the
/// trusted sites worth keeping. Main thread; the asker must outlive every call under way.
class Pipeline {
public:
    struct Found {
        QList<Candidate> candidates;
        int refused = 0; ///< answers whose link is no web address
        AgentSpend spent;
    };
    struct DugUp {
        QList<Dug> results; ///< found ones with a web address alone; texts tidied
        AgentSpend spent;
    };

    /// At most this many items are dug for in one call.
    static constexpr qsizetype maxDigBatch = 8;

    explicit Pipeline(Asker &asker) : m_asker(&asker) {}

    /// The question a scope's call sends, for the agent that would be asked.
    /// @throws AgentError when the instruction is missing
    Question question(const PlannedScope &planned, AgentKind agent) const;
    /// The question that screens feed items, one line each.
    /// @throws AgentError when the instruction is missing
    Question screening(const SitesRequest &request, const QStringList &itemLines,
                       AgentKind agent) const;

    /// The question that digs for unreadable links.
    /// @throws AgentError when the instruction is missing
    Question digging(const QList<DigItem> &items, const DigFrame &frame) const;

    /// The candidates that a question (of the first two kinds) brings, titles and links tidied.
    /// @throws AgentError, std::system_error, Cancelled
    Task<Found> candidates(Question question, CancelToken cancel);

    /// Digs for at most `maxDigBatch` items. @throws as candidates()
    Task<DugUp> dig(QList<DigItem> items, DigFrame frame, CancelToken cancel);

private:
    Asker *m_asker;
};

} // namespace vorle
