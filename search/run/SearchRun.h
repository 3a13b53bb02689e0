#pragma once

#include "search/feeds/Feeds.h"
#include "search/run/Harvest.h"

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
        /// The items of the sites' feeds that a screening passed over already (as
        /// canonicalLink()).
        QSet<QString> refusedItems;
    };

    SearchRun(Tools tools, RunPlan plan, std::shared_ptr<const JudgeContext> context,
              CancelToken cancel);

    /// Runs it all; the judged topics are in the store, "pending". Neither cancelling nor failing
    /// throws here: the report says it. To be awaited once.
    Task<RunReport> execute();

    /// After `execute`: why the run failed as a whole, if it did. Every call for links failed, or
    /// nothing that was found could be judged, unless that was so before; or something that no
    /// step is meant to throw.
    std::exception_ptr failure() const { return m_failure; }
    /// After `execute`: whether links were left without a judgment for the first time, or
    /// without having been tried. They come back only when the same period is searched again.
    bool leftLinks() const { return m_harvest.leftLinks(); }

    /// After `execute`: the items of the sites' feeds that were screened and passed over, by the
    /// agent or because they turned out to be old news (as canonicalLink()).
    QSet<QString> passedOver() const { return m_screened + (m_kept & m_harvest.oldNews()); }

private:
    Task<> askEverything();
    Task<> askScope(qsizetype index);
    Task<> askAgain(const PlannedScope &planned, QStringList found);
    Task<> askSites();
    /// Asks one question. Gives the links found, or nothing when it failed: the failure is the
    /// scope's, told in the report.
    Task<std::optional<QStringList>> ask(Question question, qsizetype report,
                                         QList<const PlannedScope *> scopes);
    qsizetype openReport(const QString &name, Origin origin, int asked);
    SiteReport &siteReport(const QString &site);
    QStringList screenedLines(QList<FeedItem> items);
    QList<const PlannedScope *> matchingScopes(const Candidate &candidate) const;
    void take(const Candidate &candidate, qsizetype report,
              const QList<const PlannedScope *> &scopes, qsizetype rank);
    void cover(const Candidate &candidate, const PlannedScope &planned);
    Task<> runStep(Task<> step);
    std::exception_ptr wholeFailure() const;
    void finishReport();

    Tools m_tools;
    RunPlan m_plan;
    CancelToken m_cancel;
    RunRecorder m_recorder;
    Pipeline m_pipeline;
    Harvest m_harvest;
    QElapsedTimer m_elapsed;
    QSet<QString> m_covered; ///< declared topics that a candidate of their scope answered
    QHash<QString, QString> m_feedDates; ///< a feed item's canonical link to its date
    QHash<QString, QString> m_feedSites; ///< … to its site
    QSet<QString> m_screened;            ///< feed items put to the agent and not kept by it
    QSet<QString> m_kept;                ///< … and kept by it
    int m_asked = 0;                     ///< questions put to the agent
    int m_askedInVain = 0;               ///< of these, those whose call failed
    std::exception_ptr m_scopeError;
    std::exception_ptr m_fault; ///< what no step is meant to throw
    std::exception_ptr m_failure;
};

} // namespace vorle
