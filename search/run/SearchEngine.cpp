#include "search/run/SearchEngine.h"

#include "base/French.h"
#include "core/Preferences.h"
#include "core/ScoreProvenanceLog.h"
#include "core/TopicStore.h"
#include "judging/Learning.h"
#include "search/run/JudgedProjects.h"
#include "search/run/ScreenedItems.h"
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
    : QObject(parent), m_parts(parts), m_restFile(parts.store.file()) {}

SearchEngine::~SearchEngine() = default;

void SearchEngine::setProgress(Phase phase, const RunProgress &progress) {
    m_phase = phase;
    m_progress = progress;
    Q_EMIT progressed(m_progress);
}

Task<RunReport> SearchEngine::run(CancelToken cancel) {
    if (m_phase != Phase::Idle) {
        throw RunRefused(tr("Une fouille est déjà en cours."), RunRefused::Reason::NotNow);
    }
    refuse(refusalText(m_parts.preferences));
    if (dependsOnFolders(m_parts.preferences)) {
        co_await askFolders(cancel);
    }
    readRest();
    co_return co_await undertake(SearchRun::Part::First, std::move(cancel));
}

/// @throws RunRefused where `why` says something
void SearchEngine::refuse(const QString &why) {
    if (!why.isEmpty()) {
        RunProgress refused;
        refused.status = why;
        setProgress(Phase::Idle, refused);
        throw RunRefused(why, RunRefused::Reason::NothingToSearch);
    }
}

/// @throws RunRefused where no folder is there to be searched for, Cancelled
Task<> SearchEngine::askFolders(CancelToken cancel) {
    m_phase = Phase::Searching; // no other run meanwhile
    m_cancel = CancelSource();
    const auto handedOn = cancel.onCancel([source = m_cancel]() mutable { source.cancel(); });
    const auto folders = m_parts.preferences.settings().projects;
    QList<ProjectSnapshot> projects;
    std::exception_ptr fault;
    try {
        // For a moment: of a disk that does not answer the run itself will tell.
        projects = co_await askProjects(folders, m_cancel.token(), std::chrono::milliseconds(300));
    } catch (...) {
        fault = std::current_exception();
    }
    m_phase = Phase::Idle;
    if (fault) {
        std::rethrow_exception(fault);
    }
    for (ProjectSnapshot &each : projects) {
        if (each.found.problem == discovery::Project::Problem::NoAnswer) {
            each.found.problem = discovery::Project::Problem::None;
        }
    }
    refuse(refusalText(m_parts.preferences, projects));
}

Task<RunReport> SearchEngine::resume(CancelToken cancel) {
    if (m_phase != Phase::Idle) {
        throw RunRefused(tr("Une fouille est déjà en cours."), RunRefused::Reason::NotNow);
    }
    readRest();
    if (!m_rest) {
        throw RunRefused(tr("Rien n’attend."), RunRefused::Reason::NotNow);
    }
    co_return co_await undertake(SearchRun::Part::Further, std::move(cancel));
}

Task<RunReport> SearchEngine::undertake(SearchRun::Part part, CancelToken cancel) {
    m_phase = Phase::Searching;
    m_reported = false;
    m_cancel = CancelSource();
    const auto handedOn = cancel.onCancel([source = m_cancel]() mutable { source.cancel(); });
    Q_EMIT started();
    try {
        co_await m_parts.asker.agent().mended(m_cancel.token());
    } catch (const Cancelled &) {
        // What comes next finds that, and ends as any run that was stopped.
    }
    Undertaking task{part, m_parts.asker.agent().locator().choose(), m_rest};
    RunFailure failure;
    std::exception_ptr error;
    try {
        m_parts.asker.agent().check(task.agent);
        RunReport report = co_await execute(task, m_cancel.token());
        setProgress(Phase::Idle, {});
        Q_EMIT finished(report);
        co_return report;
    } catch (const std::exception &thrown) {
        failure = runFailure(thrown, displayName(task.agent));
        error = std::current_exception();
    }
    // What was judged before the failure is the user's.
    m_parts.store.releaseAllPending();
    if (!m_reported && m_rest) { // it is not tried again and again by itself
        putOff();
    }
    if (!m_reported && part == SearchRun::Part::First) {
        // It never came to asking: the history says so all the same.
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

Task<RunReport> SearchEngine::execute(Undertaking &task, CancelToken cancel) {
    // A command may have changed a setting while the app was open.
    m_parts.preferences.reload();
    task.start = m_parts.clock.now();
    const auto earlier =
        task.rest ? std::optional(task.rest->waits().period) : std::optional<QDateTime>();
    task.period = periodStart(m_parts.preferences.settings(), task.start, earlier);
    const auto folders = m_parts.preferences.settings().projects;
    QList<ProjectSnapshot> projects;
    try {
        projects = co_await askProjects(folders, cancel);
    } catch (const Cancelled &) {
        co_return stoppedEarly(task);
    }
    const bool tellsApps = m_parts.preferences.settings().accessMode == AccessMode::AllExcept;
    RunPlan plan = planRun(m_parts.preferences, projects, m_parts.store.topics(), task.start,
                           tellsApps && m_parts.apps ? m_parts.apps() : QStringList(), earlier);
    const auto context = std::make_shared<const JudgeContext>(
        judgeContext(judgeContextSource(m_parts.preferences,
                                        judgedProjects(projects, m_parts.preferences.settings()),
                                        m_parts.store.topics()),
                     task.start.toLocalTime().date(), task.agent));
    if (const QString unsent = unsentReflexesText(context->unsent); !unsent.isEmpty()) {
        plan.warnings += unsent;
    }

    const auto tell = [this](const RunProgress &progress) {
        const bool reading = progress.scopesDone == progress.scopes;
        setProgress(reading ? Phase::ReadingAndSorting : Phase::Searching, progress);
    };
    const ScreenedItems screened(m_parts.store.file());
    task.sites = plan.sites;
    SearchRun run({.harvest = {.store = m_parts.store,
                               .provenance = m_parts.provenance,
                               .finds = m_parts.rediscoveries,
                               .asker = m_parts.asker,
                               .reader = m_parts.reader,
                               .images = m_parts.images,
                               .agent = task.agent,
                               .now = [this] { return m_parts.clock.now(); },
                               .exclusions = task.sites.exclusions,
                               .refusedBefore = refusedLinks(m_parts.store.history()),
                               .foundAt = task.part == SearchRun::Part::Further
                                              ? std::optional(task.rest->report.date)
                                              : std::nullopt},
                   .feeds = m_parts.feeds,
                   .tell = tell,
                   .sitesChecked = [this](const auto &sites) { recordFeeds(sites); },
                   .refusedItems = screened.passedOver(task.sites)},
                  std::move(plan), context, std::move(cancel), task.part, task.rest);
    RunReport report = co_await run.execute();
    if (task.part == SearchRun::Part::First) {
        concludeFirst(report, run, task);
    } else {
        concludeFurther(report, run, task);
    }
    m_reported = true;
    if (run.failure()) {
        std::rethrow_exception(run.failure());
    }
    co_return report;
}

/// A run that was stopped before it asked anything.
RunReport SearchEngine::stoppedEarly(const Undertaking &task) {
    RunReport report;
    report.date = m_parts.clock.now();
    report.cancelled = true;
    if (task.part == SearchRun::Part::First) {
        m_parts.store.addRun(report);
    }
    if (m_rest) {
        putOff();
    }
    m_reported = true;
    return report;
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
