#pragma once

#include "search/Feeds.h"
#include "search/Harvest.h"

#include <QElapsedTimer>

#include <deque>
#include <exception>

namespace vorle {

/// One run under way: asks every scope and the trusted sites, hands what they bring to the harvest
/// while others are still being asked, then has the unreadable pages dug for. Lives from
/// `SearchEngine::run`'s start to its end.
class SearchRun {
public:
    struct Tools {
        Harvest::Tools harvest;
        Feeds &feeds;
        std::function<void(const RunProgress &)> tell;
        /// The trusted sites with what was learned of their feeds.
        std::function<void(const QList<PrioritySite> &)> sitesChecked;
    };

    SearchRun(Tools tools, RunPlan plan, std::shared_ptr<const JudgeBrief> brief,
              CancelToken cancel);

    /// Runs it all; the judged topics are in the store, "pending". Neither cancelling nor failing
    /// throws here: the report says it. To be awaited once.
    Task<RunReport> execute();

    /// After `execute`: why the run failed as a whole, if it did. Every call for links failed, or
    /// nothing that was found could be judged; or something that no step is meant to throw.
    std::exception_ptr failure() const { return m_failure; }
    /// After `execute`: whether calls failed that left links without a judgment. They come back
    /// only when the same period is searched again.
    bool leftLinks() const { return m_harvest.judgeError() != nullptr; }

private:
    Task<> askEverything();
    Task<> askScope(qsizetype index);
    Task<> askAgain(const PlannedScope &planned, QStringList found);
    Task<> askSites();
    /// Asks one question; its failure is the scope's, told in the report. Gives the links found.
    Task<QStringList> ask(Question question, qsizetype report, QList<const PlannedScope *> scopes);
    qsizetype openReport(const QString &name, Origin origin, int asked);
    QStringList screenedLines(QList<FeedItem> items);
    QList<const PlannedScope *> whomItConcerns(const Candidate &candidate) const;
    void cover(const Candidate &candidate, const PlannedScope &planned);
    Task<> outlast(Task<> step);
    std::exception_ptr wholeFailure() const;
    void finishReport();

    Tools m_tools;
    RunPlan m_plan;
    CancelToken m_cancel;
    RunBook m_book;
    Pipeline m_pipeline;
    Harvest m_harvest;
    QElapsedTimer m_elapsed;
    QSet<QString> m_covered;             ///< declared topics that a candidate answered
    QHash<QString, QString> m_feedDates; ///< a feed item's canonical link to its date
    int m_asked = 0;                     ///< questions put to the agent
    int m_askedInVain = 0;               ///< of these, those whose call failed
    std::exception_ptr m_scopeError;
    std::exception_ptr m_fault; ///< what no step is meant to throw
    std::exception_ptr m_failure;
};

} // namespace vorle
