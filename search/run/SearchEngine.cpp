#include "search/run/SearchEngine.h"

#include "base/French.h"
#include "core/Preferences.h"
#include "core/ScoreProvenanceLog.h"
#include "core/TopicStore.h"
#include "judging/Learning.h"
#include "search/run/JudgedProjects.h"
#include "search/run/RunPlan.h"
#include "search/run/ScreenedItems.h"
#include "search/run/SearchRun.h"
#include "search/web/Links.h"

#include <algorithm>

namespace vorle {

namespace {

/// The links that earlier runs brought and could not have judged. Where nothing at all could be
/// judged, the run was stopped, or the link was given up without a call of its own, the judge may
/// have been the trouble rather than the page: it takes two such runs. Were they never counted, a
/// refused page would fail every run that brings it alone.
QSet<QString> refusedLinks(const QList<RunReport> &reports) {
    constexpr int enough = 2;
    QHash<QString, int> marks;
    for (const RunReport &report : reports) {
        const bool wentThrough = !report.failed && !report.cancelled;
        QMap<QString, int> left;
        for (const DroppedLink &link : report.unjudged) {
            int &mark = left[canonicalLink(link.url)];
            mark = std::max(mark, wentThrough && !link.untried.value_or(false) ? enough : 1);
        }
        for (auto link = left.cbegin(); link != left.cend(); ++link) {
            marks[link.key()] += link.value();
        }
    }
    marks.removeIf([](const auto &mark) { return mark.value() < enough; });
    return {marks.keyBegin(), marks.keyEnd()};
}

} // namespace

SearchEngine::SearchEngine(Parts parts, QObject *parent)
    : QObject(parent), m_parts(parts), m_rediscoveries(parts.store, parts.clock) {}

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
    if (const QString refusal = refusalText(m_parts.preferences); !refusal.isEmpty()) {
        RunProgress refused;
        refused.status = refusal;
        setProgress(Phase::Idle, refused);
        throw RunRefused(refused.status);
    }
    m_phase = Phase::Searching;
    m_reported = false;
    m_cancel = CancelSource();
    const auto handedOn = cancel.onCancel([source = m_cancel]() mutable { source.cancel(); });
    Q_EMIT started();
    const AgentKind agent = m_parts.asker.agent().locator().choose();
    RunFailure failure;
    std::exception_ptr error;
    try {
        m_parts.asker.agent().check(agent);
        RunReport report = co_await execute(agent, m_cancel.token());
        setProgress(Phase::Idle, {});
        Q_EMIT finished(report);
        co_return report;
    } catch (const std::exception &thrown) {
        failure = runFailure(thrown, displayName(agent));
        error = std::current_exception();
    }
    // What was judged before the failure is the user's.
    m_parts.store.releaseAllPending();
    if (!m_reported) { // it never came to asking: the history says so all the same
        RunReport report;
        report.date = m_parts.clock.now();
        report.failed = failure.text;
        m_parts.store.addRun(report);
    }
    RunProgress told;
    told.status = failureLine(failure);
    setProgress(Phase::Idle, told);
    Q_EMIT failed(failure);
    std::rethrow_exception(error);
}

Task<RunReport> SearchEngine::execute(AgentKind agent, CancelToken cancel) {
    // A command may have changed a setting while the app was open.
    m_parts.preferences.reload();
    const QDateTime start = m_parts.clock.now();
    const auto folders = m_parts.preferences.settings().projects;
    const auto projects = co_await askProjects(folders);
    const bool tellsApps = m_parts.preferences.settings().accessMode == AccessMode::AllExcept;
    RunPlan plan = planRun(m_parts.preferences, projects, m_parts.store.topics(), start,
                           tellsApps && m_parts.apps ? m_parts.apps() : QStringList());
    const auto context = std::make_shared<const JudgeContext>(
        judgeContext(judgeContextSource(m_parts.preferences,
                                        judgedProjects(projects, m_parts.preferences.settings()),
                                        m_parts.store.topics()),
                     start.toLocalTime().date(), agent));
    if (const QString unsent = unsentReflexesText(context->unsent); !unsent.isEmpty()) {
        plan.warnings += unsent;
    }

    const auto tell = [this](const RunProgress &progress) {
        const bool reading = progress.scopesDone == progress.scopes;
        setProgress(reading ? Phase::ReadingAndSorting : Phase::Searching, progress);
    };
    const ScreenedItems screened(m_parts.store.file());
    const SitesRequest sites = plan.sites;
    SearchRun run({.harvest = {.store = m_parts.store,
                               .provenance = m_parts.provenance,
                               .finds = m_rediscoveries,
                               .asker = m_parts.asker,
                               .reader = m_parts.reader,
                               .images = m_parts.images,
                               .agent = agent,
                               .now = [this] { return m_parts.clock.now(); },
                               .exclusions = sites.exclusions,
                               .refusedBefore = refusedLinks(m_parts.store.history())},
                   .feeds = m_parts.feeds,
                   .tell = tell,
                   .sitesChecked = [this](const auto &sites) { recordFeeds(sites); },
                   .refusedItems = screened.passedOver(sites)},
                  std::move(plan), context, std::move(cancel));
    RunReport report = co_await run.execute();
    m_parts.store.releasePending(report.topicIds);
    report.saved = m_parts.store.flush();
    // A run whose topics are not on disk is not done: the next one asks for its period again.
    if (!report.cancelled && !report.failed && report.saved) {
        recordDone(report, start, run.leftLinks());
        screened.add(sites, run.passedOver(), start);
    }
    if (!m_parts.preferences.flush()) {
        report.warnings += French::tr("La date de cette fouille n’a pas été enregistrée ; la "
                                      "prochaine reprendra la même période.");
    }
    m_parts.store.addRun(report);
    m_reported = true;
    if (run.failure()) {
        std::rethrow_exception(run.failure());
    }
    co_return report;
}

/// A run that started at `start` is done. Where it left links for the first time, the next period
/// starts at the run before it: what came since is searched twice, never more, so that the period
/// moves on whatever an agent refuses.
void SearchEngine::recordDone(const RunReport &report, const QDateTime &start, bool leftLinks) {
    const Settings &settings = m_parts.preferences.settings();
    const QDateTime before = settings.lastSearch.value_or(periodStart(settings, start));
    m_parts.preferences.change(&Settings::lastReport, lastOf(report));
    m_parts.preferences.change(&Settings::searchedUntil,
                               leftLinks ? std::min(before, start) : start);
    // A clock set back meanwhile does not date the run before what it was due at.
    const QDateTime ended = std::max(report.date, start);
    m_parts.preferences.change(&Settings::servedSlot,
                               settings.schedule.slotAt(ended, m_parts.zone));
    m_parts.preferences.change(&Settings::lastSearch, ended);
}

/// Keeps what a run learned of the feeds of the sites the user still trusts.
void SearchEngine::recordFeeds(const QList<PrioritySite> &checked) {
    QList<PrioritySite> sites = m_parts.preferences.settings().prioritySites;
    for (PrioritySite &site : sites) {
        const auto found = std::find_if(checked.begin(), checked.end(), [&](const auto &other) {
            return other.address == site.address;
        });
        if (found != checked.end()) {
            site = *found;
        }
    }
    m_parts.preferences.change(&Settings::prioritySites, sites);
}

} // namespace vorle
