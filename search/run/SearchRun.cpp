#include "search/run/SearchRun.h"

#include "base/French.h"
#include "base/Text.h"
#include "search/run/FeedItemLine.h"
#include "search/run/TopicDraft.h"
#include "search/web/Links.h"

#include <QElapsedTimer>

#include <utility>

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
                     CancelToken cancel, Part part, const std::optional<RunRemainder> &rest)
    : m_tools(std::move(tools))
    , m_plan(std::move(plan))
    , m_cancel(cancel)
    , m_part(part)
    , m_recorder(m_tools.tell,
                 rest && part == Part::Further ? std::optional(rest->report) : std::nullopt)
    , m_pipeline(m_tools.harvest.asker)
    , m_harvest(m_tools.harvest, m_recorder, std::move(context), cancel)
    , m_unjudgedBefore(m_recorder.report.unjudged.size())
    , m_judgedBefore(m_recorder.report.judged) {
    m_recorder.report.waits.reset();
    m_recorder.gate.readClock(m_tools.harvest.now);
    for (const QString &warning : std::as_const(m_plan.warnings)) {
        warn(warning);
    }
    if (part == Part::Further && rest) {
        planSearches(*rest);
    } else {
        for (qsizetype i = 0; i < m_plan.scopes.size(); ++i) {
            m_searches += Search{i};
        }
    }
    for (const Search &search : std::as_const(m_searches)) {
        m_left.scopes += remaining(search);
    }
    m_left.sites = !m_plan.sites.sites.isEmpty();
    if (rest) {
        m_links = rest->links;
    }
    m_recorder.progress.scopes =
        static_cast<int>(m_searches.size()) + (m_plan.sites.sites.isEmpty() ? 0 : 1);
}

Task<RunReport> SearchRun::execute() {
    takeLinks(std::exchange(m_links, {}));
    co_await runStep(askEverything());
    m_recorder.showReading();
    co_await runStep(m_harvest.finishReading());
    co_await runStep(m_harvest.finishJudging());
    if (!m_recorder.report.cancelled) {
        co_await runStep(m_harvest.dig());
    }
    co_await runStep(m_harvest.finishPictures());
    co_await runStep(m_harvest.finishRecords());
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
    asking.add(forEachBounded(m_searches.size(), maxConcurrentScopes,
                              [this](qsizetype index) { return askScope(index); }));
    if (!m_plan.sites.sites.isEmpty()) {
        asking.add(askSites());
    }
    co_await asking.join();
}

qsizetype SearchRun::openReport(const QString &name, Origin origin, int asked) {
    const qsizetype report = m_recorder.openScope(name, origin);
    m_recorder.report.scopes[report].asked = asked;
    if (!m_recorder.gate.isClosed()) {
        m_recorder.show(name);
    }
    return report;
}

Task<> SearchRun::askScope(qsizetype index) {
    m_cancel.throwIfCancelled();
    const Search &search = m_searches[index];
    const PlannedScope &planned = m_plan.scopes[search.scope];
    co_await (search.isSecond ? askAgain(planned, search.topics, search.found) : askFirst(planned));
    ++m_recorder.progress.scopesDone;
    m_recorder.tell();
}

Task<> SearchRun::askFirst(const PlannedScope &planned) {
    const qsizetype report = openReport(planned.name, planned.origin, planned.request.count);
    const std::optional<QStringList> found =
        co_await ask(m_pipeline.question(planned, m_tools.harvest.agent), report, {&planned});
    strike({planned.name, planned.origin, {}, {}}, report);
    QStringList empty;
    for (const QString &topic : planned.topics) {
        if (!m_covered.contains(topic)) {
            empty += topic;
        }
    }
    if (found && !empty.isEmpty()) {
        co_await askAgain(planned, empty, *found);
    }
}

/// The declared topics that came back empty are searched once more.
Task<> SearchRun::askAgain(const PlannedScope &planned, QStringList empty, QStringList found) {
    const PlannedScope second = secondSearch(planned, empty, found);
    const qsizetype report = openReport(second.name, second.origin, second.request.count);
    const RemainingScope left{second.name, second.origin, empty, found};
    if (!m_left.scopes.contains(left)) {
        m_left.scopes += left;
    }
    co_await ask(m_pipeline.question(second, m_tools.harvest.agent), report, {&planned});
    strike(left, report);
}

Task<> SearchRun::askSites() {
    m_cancel.throwIfCancelled();
    const qsizetype report = openReport(sitesName(), Origin::Surface, m_plan.sites.count);
    if (m_recorder.gate.isClosed()) {
        leaveSites(report);
        ++m_recorder.progress.scopesDone;
        co_return;
    }
    QSet<QString> known = m_tools.refusedItems;
    for (const QString &link : std::as_const(m_plan.sites.allKnownLinks)) {
        known.insert(canonicalLink(link));
    }
    const FeedsForRun feeds =
        co_await m_tools.feeds.itemsForRun(m_plan.sites.sites, known, m_cancel);
    m_tools.sitesChecked(feeds.sites);
    bool noneAnswered = true;
    for (const SiteFeedResult &site : feeds.reports) {
        siteReport(site.address);
        noneAnswered = noneAnswered && site.outcome == FeedOutcome::Unreachable;
        const FeedTrouble trouble{site.address, feedProblem(site.outcome)};
        if (site.outcome != FeedOutcome::Read && !m_recorder.report.feeds.contains(trouble)) {
            m_recorder.report.feeds += trouble;
        }
    }
    for (const FeedItem &item : feeds.items) { // each site's newest first
        SiteReport &site = siteReport(item.site);
        if (!site.latest || site.latestAt < item.date) {
            constexpr qsizetype most = 200;
            site.latest = clampedLine(item.title, most);
            site.latestAt = item.date;
        }
    }
    if (noneAnswered) {
        m_recorder.report.scopes[report].error = French::tr("Aucun de tes sites n’a répondu.");
    }
    co_await screen(report, feeds.items);
    m_left.sites = waits(report);
    ++m_recorder.progress.scopesDone;
    m_recorder.tell();
}

/// Asks which of the feeds' items are worth keeping.
Task<> SearchRun::screen(qsizetype report, QList<FeedItem> items) {
    const QStringList lines = screenedLines(std::move(items));
    if (lines.isEmpty()) {
        m_recorder.report.scopes[report].waits.reset();
        co_return;
    }
    const std::optional<QStringList> kept =
        co_await ask(m_pipeline.screening(m_plan.sites, lines, m_tools.harvest.agent), report, {});
    if (!kept) {
        m_screened.clear(); // nobody has looked at them
        if (waits(report)) {
            leaveSites(report);
        }
        co_return;
    }
    for (const QString &link : *kept) {
        if (const QString item = canonicalLink(link); m_screened.remove(item)) {
            m_kept.insert(item);
        }
    }
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
        warn(left == 1
                 ? French::tr("Tes sites annonçaient trop de nouveautés : la plus ancienne est "
                              "laissée de côté.")
                 : French::tr(
                       "Tes sites annonçaient trop de nouveautés : les %1 plus anciennes sont "
                       "laissées de côté.")
                       .arg(left));
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
    if (m_recorder.gate.isClosed()) {
        m_recorder.report.scopes[report].waits = true;
        co_return answered;
    }
    m_recorder.report.scopes[report].waits.reset();
    ++m_asked;
    QElapsedTimer clock;
    clock.start();
    const auto recordCall = [&](const AgentSpend &spent, RunRecorder::CallEnd end) {
        m_recorder.recordCall(scopes.isEmpty() ? RunStep::Sites : RunStep::Candidates,
                              static_cast<double>(clock.elapsed()) / 1000.0, spent, end);
    };
    try {
        const Pipeline::Found found = co_await m_pipeline.candidates(std::move(question), m_cancel);
        ScopeReport &scope = m_recorder.report.scopes[report];
        scope.found += static_cast<int>(found.candidates.size()) + found.refused;
        scope.refused += found.refused;
        recordCall(found.spent, RunRecorder::CallEnd::Answered);
        QStringList links;
        for (const Candidate &candidate : found.candidates) {
            links += candidate.url;
            take(candidate, report, scopes, links.size());
        }
        answered = links;
    } catch (const Cancelled &) {
        throw;
    } catch (const std::exception &error) {
        recordCall(failureSpend(error), RunRecorder::CallEnd::Failed);
        if (m_recorder.gate.isClosedBy(error)) {
            --m_asked; // it is asked later
            m_recorder.report.scopes[report].waits = true;
        } else {
            ++m_askedInVain;
            m_recorder.report.scopes[report].error = failureText(error);
            m_scopeError = std::current_exception();
        }
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
    // What the agent's limit kept from being done is done later.
    if (m_fault || m_recorder.report.cancelled || m_recorder.gate.isClosed()) {
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
    m_failure = wholeFailure();
    if (m_part == Part::Further && (report.cancelled || m_failure)) {
        takeBack();
    }
    m_left.links = m_harvest.left();
    const QStringList waiting = waitingTopics();
    for (const Search &search : std::as_const(m_searches)) {
        const QStringList &asked =
            search.isSecond ? search.topics : m_plan.scopes[search.scope].topics;
        for (const QString &topic : asked) {
            if (!m_covered.contains(topic) && !waiting.contains(topic)) {
                report.uncovered += topic;
            }
        }
    }
    if (m_part == Part::First) {
        report.date = m_tools.harvest.now();
    }
    report.added = static_cast<int>(report.topicIds.size());
    report.judged = m_judgedBefore + m_recorder.progress.judged;
    report.seconds = m_recorder.seconds();
    if (m_failure) {
        try {
            std::rethrow_exception(m_failure);
        } catch (const std::exception &error) {
            report.failed = failureText(error);
        }
    } else if (m_harvest.judgeError() && !report.cancelled) {
        warn(leftLinks()
                 ? French::tr("Des liens n’ont pas pu être jugés : la prochaine fouille "
                              "les cherchera encore.")
                 : French::tr("Des liens n’ont pas pu être jugés, comme la fois d’avant : je "
                              "n’y reviens plus."));
    }
}

} // namespace vorle
