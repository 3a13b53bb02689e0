#include "search/run/SearchRun.h"

#include "base/French.h"
#include "base/Text.h"
#include "search/run/FeedItemLine.h"
#include "search/run/TopicDraft.h"
#include "search/web/Links.h"

namespace vorle {

namespace {

constexpr qsizetype maxConcurrentScopes = 3;
/// What the items of the feeds may take of a prompt.
constexpr qsizetype itemLinesBytes = 60'000;

QString feedProblem(FeedOutcome outcome) {
    return outcome == FeedOutcome::NoFeed ? French::tr("ce site n’annonce aucun flux.")
                                          : French::tr("ce site n’a pas répondu.");
}

} // namespace

SearchRun::SearchRun(Tools tools, RunPlan plan, std::shared_ptr<const JudgeContext> context,
                     CancelToken cancel)
    : m_tools(std::move(tools))
    , m_plan(std::move(plan))
    , m_cancel(cancel)
    , m_recorder(m_tools.tell)
    , m_pipeline(m_tools.harvest.asker)
    , m_harvest(m_tools.harvest, m_recorder, std::move(context), cancel) {
    m_recorder.report.warnings = m_plan.warnings;
    m_recorder.report.steps = QList<StepReport>();
    m_recorder.report.sites = QList<SiteReport>();
    m_recorder.progress.scopes =
        static_cast<int>(m_plan.scopes.size()) + (m_plan.sites.sites.isEmpty() ? 0 : 1);
}

Task<RunReport> SearchRun::execute() {
    m_elapsed.start();
    co_await runStep(askEverything());
    m_recorder.showReading();
    co_await runStep(m_harvest.finishReading());
    co_await runStep(m_harvest.finishJudging());
    if (!m_recorder.report.cancelled) {
        co_await runStep(m_harvest.dig());
    }
    co_await runStep(m_harvest.finishPictures());
    co_await runStep(m_harvest.finishProvenance());
    m_harvest.finalizeUnread();
    finishReport();
    co_return m_recorder.report;
}

/// Waits for a step whatever it throws: what it started uses this object.
Task<> SearchRun::runStep(Task<> step) {
    try {
        co_await step;
    } catch (const Cancelled &) {
        m_recorder.report.cancelled = true;
    } catch (...) {
        m_fault = m_fault ? m_fault : std::current_exception();
    }
}

/// The trusted sites have a place of their own: slow projects must not keep their feeds waiting.
Task<> SearchRun::askEverything() {
    TaskGroup asking;
    asking.add(forEachBounded(m_plan.scopes.size(), maxConcurrentScopes,
                              [this](qsizetype index) { return askScope(index); }));
    if (!m_plan.sites.sites.isEmpty()) {
        asking.add(askSites());
    }
    co_await asking.join();
}

qsizetype SearchRun::openReport(const QString &name, Origin origin, int asked) {
    ScopeReport scope;
    scope.name = name;
    scope.origin = origin;
    scope.asked = asked;
    scope.yield = Yield();
    m_recorder.report.scopes += scope;
    m_recorder.show(name);
    return m_recorder.report.scopes.size() - 1;
}

Task<> SearchRun::askScope(qsizetype index) {
    m_cancel.throwIfCancelled();
    const PlannedScope &planned = m_plan.scopes[index];
    const qsizetype report = openReport(planned.name, planned.origin, planned.request.count);
    const std::optional<QStringList> found =
        co_await ask(m_pipeline.question(planned, m_tools.harvest.agent), report, {&planned});
    if (found) {
        co_await askAgain(planned, *found);
    }
    ++m_recorder.progress.scopesDone;
    m_recorder.tell();
}

/// The declared topics that came back empty are searched once more.
Task<> SearchRun::askAgain(const PlannedScope &planned, QStringList found) {
    QStringList empty;
    for (const QString &topic : planned.topics) {
        if (!m_covered.contains(topic)) {
            empty += topic;
        }
    }
    if (empty.isEmpty()) {
        co_return;
    }
    const PlannedScope second = secondSearch(planned, empty, found);
    const qsizetype report = openReport(second.name, second.origin, second.request.count);
    co_await ask(m_pipeline.question(second, m_tools.harvest.agent), report, {&planned});
}

Task<> SearchRun::askSites() {
    m_cancel.throwIfCancelled();
    const qsizetype report =
        openReport(French::tr("Tes sites"), Origin::Surface, m_plan.sites.count);
    QSet<QString> held = m_tools.refusedItems;
    for (const QString &link : std::as_const(m_plan.sites.allKnownLinks)) {
        held.insert(canonicalLink(link));
    }
    const FeedsForRun feeds =
        co_await m_tools.feeds.itemsForRun(m_plan.sites.sites, held, m_cancel);
    m_tools.sitesChecked(feeds.sites);
    bool noneAnswered = true;
    for (const SiteFeedResult &site : feeds.reports) {
        *m_recorder.report.sites += SiteReport{site.address, 0, 0, {}};
        noneAnswered = noneAnswered && site.outcome == FeedOutcome::Unreachable;
        if (site.outcome != FeedOutcome::Read) {
            m_recorder.report.feeds += FeedTrouble{site.address, feedProblem(site.outcome)};
        }
    }
    if (noneAnswered) {
        m_recorder.report.scopes[report].error = French::tr("Aucun de tes sites n’a répondu.");
    }
    const QStringList lines = screenedLines(feeds.items);
    if (!lines.isEmpty()) {
        const std::optional<QStringList> kept = co_await ask(
            m_pipeline.screening(m_plan.sites, lines, m_tools.harvest.agent), report, {});
        if (kept) {
            for (const QString &link : *kept) {
                if (const QString item = canonicalLink(link); m_screened.remove(item)) {
                    m_kept.insert(item);
                }
            }
        } else {
            m_screened.clear(); // nobody has looked at them
        }
    }
    ++m_recorder.progress.scopesDone;
    m_recorder.tell();
}

/// The items' lines as far as they fit, the newest first, whatever their site, so that none crowds
/// the others out.
QStringList SearchRun::screenedLines(QList<FeedItem> items) {
    std::stable_sort(items.begin(), items.end(),
                     [](const FeedItem &a, const FeedItem &b) { return a.date > b.date; });
    QStringList lines;
    qsizetype bytes = 0;
    for (const FeedItem &item : std::as_const(items)) {
        const QString line = feedItemLine(item);
        bytes += utf8Size(line) + 1;
        if (bytes > itemLinesBytes) {
            break;
        }
        lines += line;
        const QString link = canonicalLink(item.link);
        m_screened.insert(link);
        m_feedSites.insert(link, item.site);
        ++siteReport(item.site).items;
        if (item.date) {
            m_feedDates.insert(link, item.date->date().toString(Qt::ISODate));
        }
    }
    if (const qsizetype left = items.size() - lines.size(); left > 0) {
        m_recorder.report.warnings +=
            left == 1
                ? French::tr("Tes sites annonçaient trop de nouveautés : la plus ancienne est "
                             "laissée de côté.")
                : French::tr(
                      "Tes sites annonçaient trop de nouveautés : les %1 plus anciennes sont "
                      "laissées de côté.")
                      .arg(left);
    }
    return lines;
}

SiteReport &SearchRun::siteReport(const QString &site) {
    QList<SiteReport> &sites = *m_recorder.report.sites;
    const auto found = std::ranges::find(sites, site, &SiteReport::site);
    return found != sites.end() ? *found : sites.emplaceBack(SiteReport{site, 0, 0, {}});
}

/// Whom an item of a trusted site is for: every project and the declared topics it is about.
QList<const PlannedScope *> SearchRun::matchingScopes(const Candidate &candidate) const {
    QList<const PlannedScope *> scopes;
    for (const PlannedScope &planned : m_plan.scopes) {
        if (concerns(candidate, planned)) {
            scopes += &planned;
        }
    }
    return scopes;
}

/// `scopes` are those the question is asked for; none for the trusted sites.
Task<std::optional<QStringList>> SearchRun::ask(Question question, qsizetype report,
                                                QList<const PlannedScope *> scopes) {
    std::optional<QStringList> answered;
    ++m_asked;
    QElapsedTimer clock;
    clock.start();
    const auto recordCall = [&](double costUSD, RunRecorder::CallEnd end) {
        m_recorder.recordCall(scopes.isEmpty() ? RunStep::Sites : RunStep::Candidates,
                              static_cast<double>(clock.elapsed()) / 1000.0, costUSD, end);
    };
    try {
        const Pipeline::Found found = co_await m_pipeline.candidates(std::move(question), m_cancel);
        ScopeReport &scope = m_recorder.report.scopes[report];
        scope.found = static_cast<int>(found.candidates.size()) + found.refused;
        scope.refused = found.refused;
        recordCall(found.costUSD.value_or(0), RunRecorder::CallEnd::Answered);
        QStringList links;
        for (const Candidate &candidate : found.candidates) {
            links += candidate.url;
            take(candidate, report, scopes, links.size());
        }
        answered = links;
    } catch (const Cancelled &) {
        throw;
    } catch (const std::exception &error) {
        ++m_askedInVain;
        recordCall(failureCost(error), RunRecorder::CallEnd::Failed);
        m_recorder.report.scopes[report].error = failureText(error);
        m_scopeError = std::current_exception();
    }
    co_return answered;
}

/// Takes the `rank`th candidate of an answer in. An answer far past what was asked for would be
/// read and paid for whole: of what comes past three times that, only what answers a topic that
/// nothing did so far is read, and the rest is told.
void SearchRun::take(const Candidate &candidate, qsizetype report,
                     const QList<const PlannedScope *> &scopes, qsizetype rank) {
    const qsizetype before = m_covered.size();
    for (const PlannedScope *planned : scopes) {
        cover(candidate, *planned);
    }
    const ScopeReport &scope = m_recorder.report.scopes[report];
    if (rank > 3 * scope.asked && m_covered.size() == before) {
        // The judge never saw it: it is not among those that were left.
        std::optional<QList<DroppedLink>> &surplus = m_recorder.report.surplus;
        surplus = std::move(surplus).value_or(QList<DroppedLink>());
        *surplus += DroppedLink{
            candidate.title, candidate.url,
            French::tr("L’IA a ramené bien plus de liens que les %1 demandés : celui-ci n’a "
                       "pas été lu.")
                .arg(scope.asked)};
        return;
    }
    const QString link = canonicalLink(candidate.url);
    const auto known = [&](const QHash<QString, QString> &feeds) {
        return feeds.contains(link) ? std::optional(feeds.value(link)) : std::nullopt;
    };
    Harvest::Origins origins{report, scopes, known(m_feedDates), {}};
    if (scopes.isEmpty()) {
        origins.planned = matchingScopes(candidate);
        origins.site = known(m_feedSites);
        if (origins.site) {
            ++siteReport(*origins.site).found;
        }
    }
    m_harvest.take(candidate, origins);
}

/// A declared topic is answered by what its own search brings, not by what another scope did: that
/// would be a matter of who came first.
void SearchRun::cover(const Candidate &candidate, const PlannedScope &planned) {
    for (const QString &topic : topicsOf(candidate, planned)) {
        m_covered.insert(topic);
    }
}

std::exception_ptr SearchRun::wholeFailure() const {
    if (m_fault || m_recorder.report.cancelled) {
        return m_fault;
    }
    if (m_asked > 0 && m_askedInVain == m_asked) {
        return m_scopeError;
    }
    // A page that an agent always refuses fails one run, not every one that brings it.
    return m_recorder.report.topicIds.isEmpty() && m_harvest.failedAnew() ? m_harvest.judgeError()
                                                                          : nullptr;
}

void SearchRun::finishReport() {
    RunReport &report = m_recorder.report;
    for (const PlannedScope &planned : m_plan.scopes) {
        for (const QString &topic : planned.topics) {
            if (!m_covered.contains(topic)) {
                report.uncovered += topic;
            }
        }
    }
    report.date = m_tools.harvest.now();
    report.added = static_cast<int>(report.topicIds.size());
    report.judged = m_recorder.progress.judged;
    report.seconds = static_cast<double>(m_elapsed.elapsed()) / 1000.0;
    m_failure = wholeFailure();
    if (m_failure) {
        try {
            std::rethrow_exception(m_failure);
        } catch (const std::exception &error) {
            report.failed = failureText(error);
        }
    } else if (m_harvest.judgeError() && !report.cancelled) {
        report.warnings +=
            leftLinks()
                ? French::tr("Des liens n’ont pas pu être jugés : la prochaine fouille "
                             "les cherchera encore.")
                : French::tr("Des liens n’ont pas pu être jugés, comme la fois d’avant : je "
                             "n’y reviens plus.");
    }
}

} // namespace vorle
