// What the driver keeps when a run ends, and of one that is not at its end, in an order that lets
// the program be killed at any moment: what was judged is on disk before what is left is, and that
// before anything says that the run is done.

#include "agents/AgentKind.h"
#include "base/French.h"
#include "core/Preferences.h"
#include "core/TopicStore.h"
#include "search/run/ScreenedItems.h"
#include "search/run/SearchEngine.h"

#include <algorithm>
#include <utility>

namespace vorle {

namespace {

int answeredCalls(const RunReport &report) {
    int calls = 0;
    for (const StepReport &step : report.steps.value_or(QList<StepReport>())) {
        calls += step.calls - step.failed;
    }
    return calls;
}

/// The report of a part that did not come to its end: it waits as it did before, and the searches
/// that are left are asked once more.
RunReport stillWaiting(RunReport part, const RunRemainder &rest) {
    part.waits = rest.waits();
    part.cancelled = false;
    part.failed.reset();
    for (ScopeReport &scope : part.scopes) {
        const bool isLeft = std::ranges::any_of(rest.scopes, [&](const RemainingScope &left) {
            return left.name == scope.name && left.origin == scope.origin;
        });
        if (isLeft || (rest.sites && scope.origin == Origin::Surface)) {
            scope.waits = true;
            scope.error.clear();
            scope.found = scope.known = scope.merged = scope.refused = 0;
        }
    }
    return part;
}

} // namespace

const std::optional<RunRemainder> &SearchEngine::remainder() {
    if (!m_restRead) {
        readRest();
    }
    return m_rest;
}

/// Reads it anew: another process may have had the topics since.
void SearchEngine::readRest() {
    m_restRead = true;
    RemainderFile::Reading reading = m_restFile.read();
    if (reading.rest != m_rest) {
        setRest(std::move(reading.rest));
    }
    if (reading.found != RemainderFile::Found::Unreadable) {
        return;
    }
    const QList<RunReport> reports = m_parts.store.history();
    const auto waiting = std::ranges::find_if(
        reports, [](const RunReport &report) { return report.waits.has_value(); });
    if (waiting != reports.end()) {
        giveUp(*waiting, tr("Ce qui restait à faire était illisible\u00A0: la prochaine fouille "
                            "reprendra la même période."));
    }
    m_restFile.clear(m_parts.clock.now());
}

void SearchEngine::setRest(std::optional<RunRemainder> rest) {
    m_rest = std::move(rest);
    Q_EMIT remainderChanged();
}

bool SearchEngine::giveUpRest() {
    if (m_phase != Phase::Idle || !remainder()) {
        return false;
    }
    giveUp(m_rest->report, tr("La suite a été abandonnée."));
    if (m_restFile.clear(m_parts.clock.now())) {
        setRest(std::nullopt);
    }
    return !m_rest;
}

/// What `report` waits for will not come: the next run looks at its period again.
void SearchEngine::giveUp(const RunReport &report, const QString &why) {
    lookAgainFrom(report.waits->period);
    m_parts.preferences.flush();
    closeReport(report, why);
}

/// As the history has it, which may know more than what was kept with the remainder.
void SearchEngine::closeReport(const RunReport &report, const QString &why) {
    const QList<RunReport> reports = m_parts.store.history();
    const auto kept = reportOf(reports, report.date);
    RunReport closed = kept != reports.cend() ? *kept : report;
    closed.waits.reset();
    closed.warnings += why;
    m_parts.store.replaceRun(closed);
}

void SearchEngine::lookAgainFrom(const QDateTime &period) {
    const Settings &settings = m_parts.preferences.settings();
    const QDateTime until = settings.searchedUntil.value_or(settings.lastSearch.value_or(period));
    m_parts.preferences.change(&Settings::searchedUntil, std::min(until, period));
}

/// A run that started at `start` is done. The next period starts there, or at `backTo`.
void SearchEngine::recordDone(const RunReport &report, const QDateTime &start,
                              const std::optional<QDateTime> &backTo) {
    m_parts.preferences.change(&Settings::lastReport, lastOf(report));
    m_parts.preferences.change(&Settings::searchedUntil, backTo ? std::min(*backTo, start) : start);
    // A clock set back meanwhile does not date the run before what it was due at.
    const QDateTime ended = std::max(report.date, start);
    m_parts.preferences.change(&Settings::servedSlot,
                               m_parts.preferences.settings().schedule.slotAt(ended, m_parts.zone));
    m_parts.preferences.change(&Settings::lastSearch, ended);
}

/// Puts on disk what the agent's limit left, and says in the report that it waits. False where it
/// could not be kept.
bool SearchEngine::keepRest(RunReport &report, const SearchRun &run, const Undertaking &task) {
    const QDateTime now = m_parts.clock.now();
    const bool isFurther = task.part == SearchRun::Part::Further;
    RunRemainder rest = isFurther ? *task.rest : RunRemainder();
    static_cast<RunRest &>(rest) = run.left();
    if (rest.isEmpty()) {
        return true; // the user has decided on all that was left
    }
    // From the moment it was told: its hour may have come while the run was ending.
    auto until = run.limit()->until(run.limitMet(), m_parts.zone);
    if (until) {
        constexpr int soonSeconds = 120;
        until = std::max(*until, now.addSecs(soonSeconds));
    }
    const int searches = static_cast<int>(rest.scopes.size()) + (rest.sites ? 1 : 0);
    report.waits = RunWaits{now,
                            until,
                            displayName(task.agent),
                            run.limit()->words,
                            searches,
                            static_cast<int>(rest.links.size()),
                            task.period};
    constexpr int enough = 3; // parts that had no answer, and it no longer goes on by itself
    const int before = isFurther ? answeredCalls(task.rest->report) : 0;
    rest.fruitless = answeredCalls(report) > before ? 0 : rest.fruitless + 1;
    rest.asked = rest.fruitless >= enough;
    rest.report = report;
    if (!m_restFile.write(rest, now)) {
        report.waits.reset();
        return false;
    }
    setRest(std::move(rest));
    return true;
}

void SearchEngine::concludeFirst(RunReport &report, const SearchRun &run, const Undertaking &task) {
    TopicStore &store = m_parts.store;
    const bool wentThrough = !report.cancelled && !report.failed;
    const Settings &settings = m_parts.preferences.settings();
    std::optional<QDateTime> backTo;
    if (run.leftLinks()) {
        // Where links were left for the first time, the next period starts at the run before this
        // one: what came since is searched twice, never more, so that the period moves on whatever
        // an agent refuses.
        const QDateTime before = settings.lastSearch.value_or(periodStart(settings, task.start));
        backTo = task.rest ? std::min(before, task.period) : before;
    }
    bool isKept = true;
    const QString takenIn = tr("La suite est passée dans la fouille suivante.");
    if (wentThrough && run.limit()) {
        isKept = store.flush();
        if (isKept && task.rest) { // before its remainder is replaced: nothing would close it
            closeReport(task.rest->report, takenIn);
        }
        isKept = isKept && keepRest(report, run, task);
        if (!isKept) {
            backTo = task.period;
            report.warnings += run.limit()->words;
            report.warnings += tr("Ce qui restait à faire n’a pas pu être gardé\u00A0: la "
                                  "prochaine fouille reprendra la même période.");
        }
    }
    store.releasePending(report.topicIds);
    report.saved = store.flush();
    // A run whose topics are not on disk is not done: the next one asks for its period again.
    const bool isDone = wentThrough && report.saved;
    if (isDone) {
        recordDone(report, task.start, backTo);
        ScreenedItems(store.file()).add(task.sites, run.passedOver(), task.start);
    }
    if (!m_parts.preferences.flush()) {
        report.warnings += French::tr("La date de cette fouille n’a pas été enregistrée\u202F; la "
                                      "prochaine reprendra la même période.");
    }
    store.addRun(report);
    if (task.rest && !(isDone && isKept)) {
        putOff();
    } else if (task.rest && !report.waits) {
        closeReport(task.rest->report, takenIn);
        if (m_restFile.clear(m_parts.clock.now())) {
            setRest(std::nullopt);
        }
    }
}

/// What is left stays, and goes on when the user says so.
void SearchEngine::putOff() {
    RunRemainder rest = *m_rest;
    rest.asked = true;
    m_restFile.write(rest, m_parts.clock.now());
    setRest(std::move(rest));
}

void SearchEngine::concludeFurther(RunReport &report, const SearchRun &run,
                                   const Undertaking &task) {
    TopicStore &store = m_parts.store;
    report.saved = store.flush();
    if (report.cancelled || report.failed || !report.saved) {
        m_rest->report = stillWaiting(report, *task.rest);
        store.replaceRun(m_rest->report);
        putOff();
    } else {
        if (run.limit() && !keepRest(report, run, task)) {
            report.waits = task.rest->waits(); // what was left before still is
            putOff();                          // and it is not tried again by itself
        }
        const Settings &settings = m_parts.preferences.settings();
        if (!settings.lastSearch || *settings.lastSearch < report.date) {
            recordDone(report, report.date, task.period); // its first part was killed before
        } else if (settings.lastReport && settings.lastReport->date == report.date) {
            m_parts.preferences.change(&Settings::lastReport, lastOf(report));
        }
        if (run.leftLinks() || run.dropped()) {
            lookAgainFrom(task.period);
        }
        ScreenedItems(store.file()).add(task.sites, run.passedOver(), task.start);
        store.replaceRun(report);
        if (!report.waits && m_restFile.clear(m_parts.clock.now())) {
            setRest(std::nullopt);
        } else if (!report.waits) { // a file that stays would have it all asked again and again
            putOff();
        }
    }
    store.releasePending(report.topicIds);
    report.saved = store.flush() && report.saved;
    m_parts.preferences.flush();
    // Whoever follows the run is told what this part brought: the rest was told before.
    const qsizetype before = task.rest->report.topicIds.size();
    report.topicIds = report.topicIds.mid(std::min(before, report.topicIds.size()));
    report.added = static_cast<int>(report.topicIds.size());
}

} // namespace vorle
