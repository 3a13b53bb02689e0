// The part of a run that takes up what an earlier one left, and tells what this one leaves.

#include "base/French.h"
#include "search/run/SearchRun.h"

#include <algorithm>
#include <utility>

namespace vorle {

const PlannedScope *SearchRun::plannedScope(const QString &name) const {
    const auto found = std::ranges::find(m_plan.scopes, name, &PlannedScope::name);
    return found != m_plan.scopes.end() ? &*found : nullptr;
}

void SearchRun::warn(const QString &sentence) {
    if (!m_recorder.report.warnings.contains(sentence)) {
        m_recorder.report.warnings += sentence;
    }
}

void SearchRun::tellGone(const QString &scope) {
    m_dropped = true;
    warn(
        French::tr("«\u202F%1\u202F» n’est plus dans ton territoire, ou son dossier ne répond "
                   "pas\u00A0: ce qui restait pour lui est laissé de côté, et la prochaine fouille "
                   "reprendra la même période.")
            .arg(scope));
}

QString SearchRun::sitesName() { return French::tr("Tes sites"); }

RemainingScope SearchRun::remaining(const Search &search) const {
    const PlannedScope &planned = m_plan.scopes[search.scope];
    return {planned.name, search.isSecond ? Origin::Suggestion : planned.origin, search.topics,
            search.found};
}

/// The search was made: it is left no more, unless the agent has reached its limit.
void SearchRun::strike(const RemainingScope &search, qsizetype report) {
    if (waits(report)) {
        return;
    }
    m_left.scopes.removeOne(search);
    if (m_recorder.report.scopes[report].failed()) {
        m_inVain += search;
    }
}

/// A stop, or a failure of the whole, leaves what was not done as the agent's limit would: of a
/// part that comes again only what was done is told.
void SearchRun::takeBack() {
    RunReport &report = m_recorder.report;
    if (m_failure) {
        m_left.scopes += m_inVain;
    }
    const auto wait = [&](const QString &name, Origin origin) {
        const qsizetype index = m_recorder.openScope(name, origin);
        report.scopes[index].waits = true;
        report.scopes[index].error.clear();
        return index;
    };
    for (const RemainingScope &search : std::as_const(m_left.scopes)) {
        wait(search.name, search.origin);
    }
    const auto failedSites = [](const ScopeReport &scope) {
        return scope.origin == Origin::Surface && scope.failed();
    };
    const bool asksSites = !m_plan.sites.sites.isEmpty();
    if (m_left.sites ||
        (asksSites && m_failure && std::ranges::any_of(report.scopes, failedSites))) {
        leaveSites(wait(sitesName(), Origin::Surface));
    }
    m_harvest.leaveUnjudged();
    report.unjudged.resize(m_unjudgedBefore);
}

/// Of the plan, the searches that were left. The scopes stay all: links are left for others too.
void SearchRun::planSearches(const RunRemainder &rest) {
    if (!rest.sites) {
        m_plan.sites.sites.clear();
    } else {
        // They wait no longer, asked or not.
        m_recorder.report.scopes[m_recorder.openScope(sitesName(), Origin::Surface)].waits.reset();
        if (m_plan.sites.sites.isEmpty()) {
            warn(French::tr("Tu n’as plus de site de confiance\u00A0: ce qui restait à y lire est "
                            "laissé de côté."));
        }
    }
    for (const RemainingScope &scope : rest.scopes) {
        const PlannedScope *planned = plannedScope(scope.name);
        Search search{0, scope.origin == Origin::Suggestion, scope.topics, scope.found};
        if (planned != nullptr && search.isSecond) {
            search.topics.removeIf(
                [&](const QString &topic) { return !planned->topics.contains(topic); });
        }
        const bool isGone = planned == nullptr || (search.isSecond && search.topics.isEmpty());
        // It waits no longer, asked or not.
        m_recorder.report.scopes[m_recorder.openScope(scope.name, scope.origin)].waits.reset();
        if (isGone) {
            tellGone(scope.name);
        } else {
            search.scope = planned - m_plan.scopes.constData();
            m_searches += search;
        }
    }
}

void SearchRun::takeLinks(const QList<RemainingLink> &links) {
    for (const RemainingLink &link : links) {
        QList<Proposal> proposals;
        for (const RemainingProposal &left : link.proposals) {
            const PlannedScope *planned = left.about ? plannedScope(*left.about) : nullptr;
            if (left.about && planned == nullptr) {
                tellGone(*left.about);
                continue;
            }
            proposals += Proposal{left.candidate,
                                  m_recorder.openScope(left.scope, left.origin),
                                  planned,
                                  left.publishedOn,
                                  left.site,
                                  {},
                                  {}};
        }
        if (!proposals.isEmpty()) {
            if (m_part == Part::First) { // the earlier report keeps its own count
                ++m_recorder.report.scopes[proposals.first().report].found;
            }
            m_harvest.takeLeft(std::move(proposals), link.others, link.topic);
        }
    }
}

bool SearchRun::waits(qsizetype report) const {
    return m_recorder.report.scopes[report].waits.value_or(false);
}

/// Their feeds are read again later, so that what was counted of them is counted then.
void SearchRun::leaveSites(qsizetype report) {
    m_recorder.report.scopes[report].waits = true;
    m_left.sites = true;
    for (SiteReport &site : *m_recorder.report.sites) {
        site.items = site.found;
    }
}

QStringList SearchRun::waitingTopics() const {
    QStringList topics;
    for (const RemainingScope &scope : m_left.scopes) {
        const PlannedScope *planned = plannedScope(scope.name);
        topics += scope.origin == Origin::Suggestion || planned == nullptr
                      ? QStringList(scope.topics)
                      : planned->topics;
    }
    return topics;
}

} // namespace vorle
