#pragma once

#include "core/RediscoveryLog.h"
#include "core/ScoreProvenanceLog.h"
#include "search/run/HarvestItem.h"
#include "search/run/JudgingQueue.h"
#include "search/run/LinkRegistry.h"
#include "search/run/RunRecorder.h"
#include "search/run/RunRemainder.h"
#include "search/web/SourceImage.h"

#include <QObject>
#include <QSet>

#include <deque>
#include <exception>

namespace vorle {

/// What the scopes of a run brought, on its way from the agent's answers to topics: each link is
/// claimed, read and judged; the unreadable ones are dug for. Main thread; stays where it is until
/// every task it gave has ended.
class Harvest {
public:
    struct Tools {
        TopicStore &store;
        ScoreProvenanceLog &provenance;
        RediscoveryLog &finds;
        Asker &asker;
        PageReader &reader;
        SourceImage &images;
        AgentKind agent;
        std::function<QDateTime()> now;
        QStringList exclusions = {}; ///< sites and folders that are no source
        /// The links that earlier runs could not have judged either (as canonicalLink()). They are
        /// judged last, each alone.
        QSet<QString> refusedBefore = {};
        /// When the topics were found, of the rest of a run: with those of its first part, which
        /// have the same report. Else at the moment.
        std::optional<QDateTime> foundAt = {};
    };
    /// Where a candidate comes from.
    struct Origins {
        qsizetype report = 0;                ///< its scope's index in the report
        QList<const PlannedScope *> planned; ///< whom it is for; may be nobody
        std::optional<QString> publishedOn;
        std::optional<QString> site; ///< the trusted site whose feed it was kept from
    };

    Harvest(Tools tools, RunRecorder &recorder, std::shared_ptr<const JudgeContext> context,
            CancelToken cancel);
    Harvest(const Harvest &) = delete;
    Harvest &operator=(const Harvest &) = delete;
    ~Harvest() = default;

    /// Takes a candidate in: it is read and judged from now on, unless its link is known already.
    /// What another scope brought too is one card, for both.
    void take(const Candidate &candidate, const Origins &origins);
    /// Takes in again what an earlier part of the run, or an earlier run, left: with all who
    /// brought it, its other addresses, and the card it has already. Does nothing where the link
    /// is known by now, or the user has decided on that card.
    void takeLeft(QList<Proposal> proposals, const QList<TopicSource> &others,
                  std::optional<QUuid> topic);

    // Each of these ends once nothing of its kind is under way any more, whatever went wrong, and
    // then throws: Cancelled, or the first failure that is none of those foreseen.

    /// Ends when every page is read, then when every candidate is judged.
    Task<> finishReading();
    Task<> finishJudging() { return m_judging.finish(); }
    /// Looks for readable pages in the place of the unreadable ones; what is found is read and
    /// judged once more.
    Task<> dig();
    /// Ends when the pictures of every topic were fetched, or could not be.
    Task<> finishPictures();
    /// Ends when what stands behind every score, and what was found again, was written, or could
    /// not be.
    Task<> finishRecords();
    /// What could not be read keeps its link and says so.
    void finalizeUnread();

    /// The failure of a call that left links without a judgment, if any did.
    std::exception_ptr judgeError() const { return m_judgeError; }
    /// Whether failed calls left a link without a judgment that was not refused before.
    bool failedAnew() const { return !m_tools.refusedBefore.contains(m_failedLinks); }
    /// Whether links were left that another run should find again: such ones, or any that was given
    /// up without having been tried.
    bool leftLinks() const { return m_gaveUp || failedAnew(); }
    /// Once all has ended: the links that the agent's limit kept from being judged or dug for, or
    /// what else leaveUnjudged() was told of.
    QList<RemainingLink> left() const;
    /// Once all has ended, and too early: what was neither judged nor dug for is left, and was not
    /// read either.
    void leaveUnjudged();
    /// Every link (as canonicalLink()) of the pages that are old news to all who brought them.
    QSet<QString> oldNews() const;

private:
    using Item = HarvestItem;

    Item &at(qsizetype index) { return m_items[static_cast<std::size_t>(index)]; }
    LinkRegistry::Claim claim(const QString &link, qsizetype index);
    Task<> finish(TaskGroup &tasks);
    Task<> read(qsizetype index);
    bool leadsElsewhere(qsizetype index);
    void follow(const QUuid &topic);
    bool takeUp(const QUuid &topic, qsizetype report);
    void count(const QUuid &topic, qsizetype report);
    std::optional<QUuid> holderOf(const Item &item) const;
    bool passOn(qsizetype index);
    void join(qsizetype index, const QList<Proposal> &proposals, const QList<TopicSource> &sources);
    int &readCount(ReadLevel level);
    Task<> readAgain(qsizetype index);
    void putToJudge(qsizetype index);
    void leaveForLater(const QList<JudgeCandidate> &batch);
    void keep(const QList<JudgeCandidate> &batch, const Judge::Verdicts &verdicts);
    QStringList leave(const QList<JudgeCandidate> &batch, const QString &reason);
    void giveUp(const QList<JudgeCandidate> &batch, const std::exception *error);
    Task<> fetchPictures(QUuid id);
    QList<DigItem> unreadItems() const;
    Task<> askToDig(QList<DigItem> items);
    Task<> readDug(Dug dug);
    void recordSites(const Item &item);
    void dropFromReport(const QUuid &topic);
    bool isUnreadTopic(qsizetype index) const;
    qsizetype joinAnother(qsizetype index, const QString &link, const TopicSource &found);

    Tools m_tools;
    RunRecorder &m_recorder;
    CancelToken m_cancel;
    Pipeline m_pipeline;
    std::shared_ptr<const JudgeContext> m_context;
    JudgingQueue m_judging;
    LinkRegistry m_links;
    QObject m_listener;       ///< to the store, as long as this is there
    std::deque<Item> m_items; ///< a candidate's identifier is its index here, from "c1"
    TaskGroup m_reads;
    TaskGroup m_pictures;
    TaskGroup m_records;
    std::exception_ptr m_judgeError;
    QSet<QString> m_failedLinks; ///< those it left
    bool m_gaveUp = false;       ///< some of them without having been tried
    bool m_isCutShort = false;
};

} // namespace vorle
