#pragma once

#include "judging/Judge.h"
#include "search/PageReader.h"
#include "search/Pipeline.h"
#include "search/RunReport.h"

#include <QElapsedTimer>
#include <QHash>

#include <deque>
#include <exception>

namespace vorle {

class TopicStore;

/// One run under way: candidates are read and judged while other scopes are still being asked.
/// Lives from `SearchEngine::run`'s start to its end.
class SearchRun {
public:
    struct Tools {
        TopicStore &store;
        Asker &asker;
        PageReader &reader;
        AgentKind agent;
        std::function<void(const RunProgress &)> tell;
        std::function<QDateTime()> now;
    };

    SearchRun(Tools tools, RunPlan plan, std::shared_ptr<const JudgeBrief> brief,
              CancelToken cancel);

    /// Runs it all; the judged topics are in the store, "pending". Cancelling is no failure here:
    /// the report says it.
    /// @throws as SearchEngine::run, for what concerns the agent
    Task<RunReport> execute();

private:
    /// A link on its way from the agent's answer to a topic.
    struct Item {
        Candidate candidate;
        qsizetype scope = 0;
        QList<TopicSource> otherSources; ///< the same link under other titles or addresses
        ReadPage page;
    };

    void noteKnownLinks();
    Task<> outlast(std::deque<Task<>> &tasks);
    Task<> askScope(qsizetype index);
    void take(qsizetype scope, Candidate candidate);
    Task<> read(qsizetype item);
    bool joinsAnother(qsizetype item);
    void judgeWaiting();
    Task<> judgeBatch(QList<JudgeCandidate> batch);
    void keep(const QList<JudgeCandidate> &batch, const Judge::Verdicts &verdicts);
    Topic topicFrom(const Item &item, const Judgment &judgment) const;
    void finishReport();
    void throwIfNothingWorked() const;
    void tell();

    Tools m_tools;
    RunPlan m_plan;
    std::shared_ptr<const JudgeBrief> m_brief;
    CancelToken m_cancel;
    Pipeline m_pipeline;
    Judge m_judge;
    QElapsedTimer m_elapsed;

    std::deque<Item> m_items; ///< a candidate's identifier is its place here
    QHash<QString, qsizetype> m_itemByLink;
    QSet<QString> m_held; ///< canonical links the store holds
    std::deque<Task<>> m_reads;
    std::deque<Task<>> m_judgments; ///< grows as batches end
    std::exception_ptr m_fault;     ///< what no step is meant to throw
    QList<JudgeCandidate> m_waiting;
    int m_judging = 0;
    bool m_everythingRead = false;
    bool m_everythingAsked = false;
    QSet<QString> m_covered; ///< declared topics that a candidate answered

    RunReport m_report;
    RunProgress m_progress;
    std::exception_ptr m_scopeError;
    std::exception_ptr m_judgeError;
};

} // namespace vorle
