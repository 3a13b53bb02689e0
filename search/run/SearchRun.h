#pragma once

#include "search/feeds/Feeds.h"
#include "search/run/Harvest.h"
#include "search/run/RunRemainder.h"

#include <deque>
#include <exception>

namespace vorle {

/// One run under way: asks every scope and the trusted sites, hands what they bring to the harvest
/// while others are still being asked, then has the unreadable pages dug for. Where the agent
/// reaches its limit it asks no more, ends what is under way, and tells what is left. Lives from
/// `SearchEngine::run`'s start to its end.
class SearchRun {
public:
    /// A run of its own, or the rest of one, which asks what that left and nothing else, and goes
    /// on with its report.
    enum class Part { First, Further };

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

    /// `rest` is what an earlier run left; of it a run of its own takes up the links alone, since
    /// it asks everything anew.
    SearchRun(Tools tools, RunPlan plan, std::shared_ptr<const JudgeContext> context,
              CancelToken cancel, Part part = Part::First,
              const std::optional<RunRemainder> &rest = {});

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
    /// After `execute`: the limit that the agent reached, if it did.
    const std::optional<UsageLimit> &limit() const { return m_recorder.gate.limit(); }
    /// Whether something that an earlier run left could not be taken up.
    bool dropped() const { return m_dropped; }
    /// When the agent told of it.
    const QDateTime &limitMet() const { return m_recorder.gate.met(); }
    /// After `execute`: what that limit left; of a further part also what a stop, or a failure of
    /// the whole, did.
    const RunRest &left() const { return m_left; }

    /// After `execute`: the items of the sites' feeds that were screened and passed over, by the
    /// agent or because they turned out to be old news (as canonicalLink()).
    QSet<QString> passedOver() const { return m_screened + (m_kept & m_harvest.oldNews()); }

private:
    /// One that is to be made of a planned scope: its own, or the second one.
    struct Search {
        qsizetype scope = 0; ///< its index in the plan
        bool isSecond = false;
        QStringList topics = {}; ///< of a second search: those that came back empty
        QStringList found = {};  ///< likewise: the links that came back for the others
    };

    void planSearches(const RunRemainder &rest);
    void takeBack();
    void strike(const RemainingScope &search, qsizetype report);
    RemainingScope remaining(const Search &search) const;
    void takeLinks(const QList<RemainingLink> &links);
    void tellGone(const QString &scope);
    const PlannedScope *plannedScope(const QString &name) const;

    Task<> askEverything();
    Task<> askScope(qsizetype index);
    Task<> askFirst(const PlannedScope &planned);
    Task<> askAgain(const PlannedScope &planned, QStringList empty, QStringList found);
    Task<> askSites();
    Task<> screen(qsizetype report, QList<FeedItem> items);
    /// Asks one question. Gives the links found, or nothing when it failed: the failure is the
    /// scope's, told in the report; so is that it waits, where the agent has reached its limit.
    Task<std::optional<QStringList>> ask(Question question, qsizetype report,
                                         QList<const PlannedScope *> scopes);
    bool waits(qsizetype report) const;
    qsizetype openReport(const QString &name, Origin origin, int asked);
    void leaveSites(qsizetype report);
    QStringList waitingTopics() const;
    static QString sitesName();
    void warn(const QString &sentence);
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
    Part m_part;
    QList<Search> m_searches;
    QList<RemainingLink> m_links;   ///< of an earlier run
    RunRest m_left;                 ///< until it is answered, each search
    QList<RemainingScope> m_inVain; ///< searches whose call failed
    RunRecorder m_recorder;
    Pipeline m_pipeline;
    Harvest m_harvest;
    qsizetype m_unjudgedBefore = 0; ///< links, in the earlier parts
    int m_judgedBefore = 0;         ///< likewise
    QSet<QString> m_covered;        ///< declared topics that a candidate of their scope answered
    QHash<QString, QString> m_feedDates; ///< a feed item's canonical link to its date
    QHash<QString, QString> m_feedSites; ///< … to its site
    QSet<QString> m_screened;            ///< feed items put to the agent and not kept by it
    QSet<QString> m_kept;                ///< … and kept by it
    int m_asked = 0;                     ///< questions put to the agent
    int m_askedInVain = 0;               ///< of these, those whose call failed
    std::exception_ptr m_scopeError;
    std::exception_ptr m_fault; ///< what no step is meant to throw
    std::exception_ptr m_failure;
    bool m_dropped = false;
};

} // namespace vorle
