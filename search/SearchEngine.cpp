#include "search/SearchEngine.h"

#include "core/Preferences.h"
#include "core/TopicStore.h"
#include "search/RunPlan.h"
#include "search/SearchRun.h"

namespace vorle {

SearchEngine::SearchEngine(Preferences &preferences, TopicStore &store, Asker &asker,
                           PageReader &reader, const Clock &clock, QObject *parent)
    : QObject(parent)
    , m_preferences(&preferences)
    , m_store(&store)
    , m_asker(&asker)
    , m_reader(&reader)
    , m_clock(&clock) {}

SearchEngine::~SearchEngine() = default;

void SearchEngine::setProgress(Phase phase, const RunProgress &progress) {
    m_phase = phase;
    m_progress = progress;
    Q_EMIT progressed(m_progress);
}

Task<RunReport> SearchEngine::run(CancelToken cancel) {
    if (m_phase != Phase::Idle) {
        throw RunRefused(tr("Une fouille est déjà en cours."));
    }
    if (!hasTerritory(*m_preferences)) {
        RunProgress refused;
        refused.status = emptyTerritoryText();
        setProgress(Phase::Idle, refused);
        throw RunRefused(refused.status);
    }
    m_phase = Phase::Searching;
    QString failure;
    std::exception_ptr error;
    try {
        const AgentKind agent = m_asker->agent().locator().choose();
        m_asker->agent().check(agent);
        RunReport report = co_await execute(agent, cancel);
        setProgress(Phase::Idle, {});
        Q_EMIT finished(report);
        co_return report;
    } catch (const AgentError &agentError) {
        failure = agentError.text();
        error = std::current_exception();
    } catch (const std::exception &other) {
        failure = QString::fromUtf8(other.what());
        error = std::current_exception();
    }
    setProgress(Phase::Idle, {});
    Q_EMIT failed(failure);
    std::rethrow_exception(error);
}

Task<RunReport> SearchEngine::execute(AgentKind agent, CancelToken cancel) {
    const QDateTime start = m_clock->now();
    RunPlan plan = planRun(*m_preferences, m_store->topics(), start);
    auto brief = std::make_shared<JudgeBrief>();
    brief->profile = plan.profile;
    brief->examples = exampleTopics(m_store->topics());
    brief->today = start.toLocalTime().date();

    SearchRun run({.store = *m_store,
                   .asker = *m_asker,
                   .reader = *m_reader,
                   .agent = agent,
                   .tell =
                       [this](const RunProgress &progress) {
                           const bool reading = progress.scopesDone == progress.scopes;
                           setProgress(reading ? Phase::ReadingAndSorting : Phase::Searching,
                                       progress);
                       },
                   .now = [this] { return m_clock->now(); }},
                  std::move(plan), brief, std::move(cancel));
    RunReport report = co_await run.execute();
    m_store->releasePending(report.topics);
    report.saved = m_store->flush();
    if (!report.cancelled) {
        m_preferences->change(&Settings::lastReport, report.last);
        m_preferences->change(&Settings::lastSearch, report.last.date);
    }
    co_return report;
}

} // namespace vorle
