// What the driver keeps when a run ends, and of one that is not at its end, in an order that lets
// the program be killed at any moment: what was judged is on disk before what is left is, and that
// before anything says that the run is done.

#include "agents/AgentKind.h"
#include "base/French.h"
#include "core/Preferences.h"
#include "core/TopicStore.h"
#include "search/run/LinkRegistry.h"
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

/// What the report waited for comes in another way, or not at all.
RunReport closed(RunReport report, const QString &why) {
    report.waits.reset();
    report.warnings += why;
    return report;
}

QString takenIn() { return SearchEngine::tr("La suite est passée dans la fouille suivante."); }

/// Of `reports`, those that wait, closed; but for the one of that date.
QList<RunReport> closedBut(QList<RunReport> reports, const std::optional<QDateTime> &date) {
    reports.removeIf([&](const RunReport &report) { return !report.waits || report.date == date; });
    for (RunReport &report : reports) {
        report = closed(std::move(report), takenIn());
    }
    return reports;
}

} // namespace

const std::optional<RunRemainder> &SearchEngine::remainder() {
    if (!m_restRead) {
        readRest();
    }
    return m_rest;
}

/// Reads it anew: another process may have had the topics since. Where that one was killed between
/// two writes, the later one is made up for.
void SearchEngine::readRest() {
    m_restRead = true;
    RemainderFile::Reading reading = m_restFile.read();
    const QList<RunReport> reports = reading.found == RemainderFile::Found::Nothing
                                         ? QList<RunReport>()
                                         : m_parts.store.history();
    if (reading.rest) {
        const auto told = reportOf(reports, reading.rest->report.date);
        if (told != reports.cend() && !told->waits) { // it came to its end: the file alone outlived
            reading.rest.reset();
            m_restFile.clear(m_parts.clock.now());
        }
    }
    if (reading.found == RemainderFile::Found::Unreadable) {
        const auto waiting = std::ranges::find_if(
            reports, [](const RunReport &report) { return report.waits.has_value(); });
        if (waiting != reports.end()) {
            giveUp(*waiting, tr("Ce qui restait à faire était illisible\u00A0: la prochaine "
                                "fouille reprendra la même période."));
        }
        m_restFile.clear(m_parts.clock.now());
    } else if (reading.rest) { // it has taken in what waited before
        for (const RunReport &report : closedBut(reports, reading.rest->report.date)) {
            m_parts.store.replaceRun(report);
        }
    }
    if (reading.rest != m_rest) {
        setRest(std::move(reading.rest));
    }
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
    return finishRest();
}

/// What `report` waits for will not come: the next run looks at its period again. The report as the
/// history has it may know more than what was kept with the remainder.
void SearchEngine::giveUp(const RunReport &report, const QString &why) {
    lookAgainFrom(report.waits->period);
    m_parts.preferences.flush();
    const QList<RunReport> reports = m_parts.store.history();
    const auto kept = reportOf(reports, report.date);
    m_parts.store.replaceRun(closed(kept != reports.cend() ? *kept : report, why));
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
    report.waits = RunWaits{now,
                            until,
                            displayName(task.agent),
                            run.limit()->words,
                            rest.searches(),
                            static_cast<int>(rest.links.size()),
                            task.period};
    const int before = isFurther ? answeredCalls(task.rest->report) : 0;
    rest.fruitless = answeredCalls(report) > before ? 0 : rest.fruitless + 1;
    rest.asked = rest.isUnanswered();
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
    if (wentThrough && run.limit()) {
        isKept = store.flush() && keepRest(report, run, task);
        if (!isKept) {
            report.warnings += run.limit()->words;
            report.warnings += tr("Ce qui restait à faire n’a pas pu être gardé\u00A0: la "
                                  "prochaine fouille reprendra la même période.");
        }
    }
    if (!isKept || run.dropped()) {
        backTo = task.period;
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
    // What waited before is this run's by now. Told in one write: were the other left waiting, all
    // of it would be asked again.
    const bool hasTakenIn = task.rest && isDone && isKept;
    store.addRun(report, hasTakenIn ? closedBut(store.history(), {}) : QList<RunReport>());
    if (task.rest && !hasTakenIn) {
        putOff();
    } else if (task.rest && !report.waits) {
        finishRest();
    }
}

/// Puts the remainder away. False where its file stays.
bool SearchEngine::finishRest() {
    const bool isGone = m_restFile.clear(m_parts.clock.now());
    if (isGone) {
        setRest(std::nullopt);
    }
    return isGone;
}

/// Has `rest` for what is left, on disk too where that can be.
void SearchEngine::leave(RunRemainder rest) {
    m_restFile.write(rest, m_parts.clock.now());
    setRest(std::move(rest));
}

/// What is left stays, but for the links that a topic on disk has by now, and goes on when the user
/// says so. Where nothing is left of it, it has come to its end.
void SearchEngine::putOff() {
    TopicStore &store = m_parts.store;
    RunRemainder rest = *m_rest;
    rest.asked = true;
    if (store.flush()) {
        const LinkRegistry held(store.topics());
        rest.links.removeIf([&](const RemainingLink &link) {
            return link.topic ? !store.isUnreadStill(*link.topic)
                              : held.topicOf(link.proposals.first().candidate.url).has_value();
        });
        rest.report.waits->links = static_cast<int>(rest.links.size());
    }
    if (!rest.isEmpty()) {
        leave(std::move(rest));
        return;
    }
    const QList<RunReport> reports = store.history();
    const auto told = reportOf(reports, rest.report.date);
    if (told != reports.cend() && told->waits) {
        store.replaceRun(closed(*told, takenIn()));
    }
    m_restFile.clear(m_parts.clock.now()); // one that stays is known by the report, which is closed
    setRest(std::nullopt);
}

/// A further part did not come to its end: what it did is told, and what it did not waits on, until
/// the user says so. Topics that are not on disk are not done.
void SearchEngine::waitOn(RunReport report, const SearchRun &run, const Undertaking &task) {
    RunRemainder rest = *task.rest;
    rest.asked = true;
    if (report.saved) {
        static_cast<RunRest &>(rest) = run.left();
        report.cancelled = false;
        report.failed.reset();
        report.waits = task.rest->waits();
        report.waits->scopes = rest.searches();
        report.waits->links = static_cast<int>(rest.links.size());
        rest.report = std::move(report);
    }
    leave(std::move(rest));
    m_parts.store.replaceRun(m_rest->report);
}

void SearchEngine::concludeFurther(RunReport &report, const SearchRun &run,
                                   const Undertaking &task) {
    TopicStore &store = m_parts.store;
    report.saved = store.flush();
    const bool isCutShort = report.cancelled || report.failed;
    if (!report.saved || (isCutShort && !run.left().isEmpty())) {
        waitOn(report, run, task);
    } else {
        report.cancelled = false; // the stop came when all was done
        if (run.limit() && !keepRest(report, run, task)) {
            report.waits = task.rest->waits(); // what was left before still is
            putOff();                          // and it is not tried again by itself
            report.waits = m_rest ? report.waits : std::nullopt;
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
        m_parts.preferences.flush();
        ScreenedItems(store.file()).add(task.sites, run.passedOver(), task.start);
        store.replaceRun(report);
        if (!report.waits && !finishRest()) {
            putOff(); // a file that stays would have it all asked again and again
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
