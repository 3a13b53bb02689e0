#pragma once

#include "core/Settings.h"
#include "core/Topic.h"

#include <QUuid>

#include <functional>

namespace vorle {

/// What came of the topics that a scope or a site brought.
struct Yield {
    QList<QUuid> topicIds;
    int added = 0;
    int kept = 0;            ///< of these, in the program or done, the last time anybody looked
    int done = 0;            ///< of those, done
    json::Rest unknown = {}; ///< keys of a later version

    static constexpr auto jsonFields() {
        return std::tuple(json::field("topicIds", &Yield::topicIds),
                          json::field("added", &Yield::added), json::field("kept", &Yield::kept),
                          json::field("done", &Yield::done));
    }
    static constexpr auto jsonRest() { return &Yield::unknown; }
    bool operator==(const Yield &) const = default;
};

/// The steps of a run that ask the agent.
enum class RunStep { Candidates, Sites, Judge, Dig };
constexpr std::array<std::string_view, 4> rawStrings(RunStep) {
    return {"candidates", "sites", "judge", "dig"};
}

/// What the calls of one step took, together. A question asked once more after a failure is one
/// call.
struct StepReport {
    RunStep step = RunStep::Candidates;
    int calls = 0;
    int failed = 0;     ///< of these, those that came to nothing
    double seconds = 0; ///< of all calls, which run beside each other
    double costUSD = 0;
    std::optional<qint64> tokens = {}; ///< where the agent tells them
    json::Rest unknown = {};           ///< keys of a later version

    static constexpr auto jsonFields() {
        return std::tuple(json::field("step", &StepReport::step),
                          json::field("calls", &StepReport::calls),
                          json::field("failed", &StepReport::failed),
                          json::field("seconds", &StepReport::seconds),
                          json::field("costUSD", &StepReport::costUSD),
                          json::field("tokens", &StepReport::tokens));
    }
    static constexpr auto jsonRest() { return &StepReport::unknown; }
    bool operator==(const StepReport &) const = default;
};

/// How one scope of a run went.
struct ScopeReport {
    QString name;
    Origin origin = Origin::Stack;
    int asked = 0;              ///< links asked for
    int found = 0;              ///< links brought back
    int known = 0;              ///< of these, known already
    int merged = 0;             ///< of these, the same link as another of this run
    int refused = 0;            ///< of these, no web address
    QString error;              ///< the failure's text when it failed, never blank then; else empty
    std::optional<Yield> yield; ///< absent from the reports of earlier versions
    /// The agent reached its limit before it answered: the rest of the run asks again.
    std::optional<bool> waits = {};
    json::Rest unknown = {}; ///< keys of a later version

    bool failed() const { return !error.isEmpty(); }

    static constexpr auto jsonFields() {
        return std::tuple(
            json::field("name", &ScopeReport::name), json::field("origin", &ScopeReport::origin),
            json::field("asked", &ScopeReport::asked), json::field("found", &ScopeReport::found),
            json::field("known", &ScopeReport::known), json::field("merged", &ScopeReport::merged),
            json::field("refused", &ScopeReport::refused),
            json::field("error", &ScopeReport::error), json::field("yield", &ScopeReport::yield),
            json::field("waits", &ScopeReport::waits));
    }
    static constexpr auto jsonRest() { return &ScopeReport::unknown; }
    bool operator==(const ScopeReport &) const = default;
};

/// What one trusted site brought through its feed.
struct SiteReport {
    QString site;  ///< as the user typed it
    int items = 0; ///< put to the agent
    int found = 0; ///< of these, kept by it
    Yield yield;
    /// The newest of its items that no earlier run had seen, with its date; absent where there was
    /// none, and from the reports of earlier versions.
    std::optional<QString> latest = {};
    std::optional<QDateTime> latestAt = {};
    json::Rest unknown = {}; ///< keys of a later version

    static constexpr auto jsonFields() {
        return std::tuple(
            json::field("site", &SiteReport::site), json::field("items", &SiteReport::items),
            json::field("found", &SiteReport::found), json::field("yield", &SiteReport::yield),
            json::field("latest", &SiteReport::latest),
            json::field("latestAt", &SiteReport::latestAt));
    }
    static constexpr auto jsonRest() { return &SiteReport::unknown; }
    bool operator==(const SiteReport &) const = default;
};

/// How many pages could be read, and how far.
struct ReadCounts {
    int full = 0;
    int seen = 0;
    int meta = 0;
    int none = 0;
    json::Rest unknown = {}; ///< keys of a later version

    static constexpr auto jsonFields() {
        return std::tuple(
            json::field("full", &ReadCounts::full), json::field("seen", &ReadCounts::seen),
            json::field("meta", &ReadCounts::meta), json::field("none", &ReadCounts::none));
    }
    static constexpr auto jsonRest() { return &ReadCounts::unknown; }
    bool operator==(const ReadCounts &) const = default;
};

/// A link that came back and did not become a topic.
struct DroppedLink {
    QString title;
    QString url;
    QString reason; ///< a French sentence
    /// Given up together with the judge, without a call of its own: that says nothing of the page.
    std::optional<bool> untried = {};
    json::Rest unknown = {}; ///< keys of a later version

    static constexpr auto jsonFields() {
        return std::tuple(json::field("title", &DroppedLink::title),
                          json::field("url", &DroppedLink::url),
                          json::field("reason", &DroppedLink::reason),
                          json::field("untried", &DroppedLink::untried));
    }
    static constexpr auto jsonRest() { return &DroppedLink::unknown; }
    bool operator==(const DroppedLink &) const = default;
};

/// A trusted site whose feed gave nothing.
struct FeedTrouble {
    QString site;
    QString problem;         ///< a French sentence
    json::Rest unknown = {}; ///< keys of a later version

    static constexpr auto jsonFields() {
        return std::tuple(json::field("site", &FeedTrouble::site),
                          json::field("problem", &FeedTrouble::problem));
    }
    static constexpr auto jsonRest() { return &FeedTrouble::unknown; }
    bool operator==(const FeedTrouble &) const = default;
};

/// What a run left when the agent reached its limit, and goes on with later.
struct RunWaits {
    QDateTime since;
    std::optional<QDateTime> until; ///< nothing where the agent does not say
    QString agent;                  ///< the agent's display name
    QString words;                  ///< its own sentence
    int scopes = 0;                 ///< searches that are left
    int links = 0;                  ///< links that are left to judge
    QDateTime period;               ///< where the period starts that it searches
    json::Rest unknown = {};        ///< keys of a later version

    static constexpr auto jsonFields() {
        return std::tuple(
            json::field("since", &RunWaits::since), json::field("until", &RunWaits::until),
            json::field("agent", &RunWaits::agent), json::field("words", &RunWaits::words),
            json::field("scopes", &RunWaits::scopes), json::field("links", &RunWaits::links),
            json::field("period", &RunWaits::period));
    }
    static constexpr auto jsonRest() { return &RunWaits::unknown; }
    bool operator==(const RunWaits &) const = default;
};

/// How a run went, whole: the five keys kept of the last run, then the rest. Keys of a later
/// version are kept as LastReport keeps them.
struct RunReport : LastReport {
    bool cancelled = false;
    bool saved = true; ///< false: the last save failed; the topics are in memory alone
    QList<ScopeReport> scopes;
    ReadCounts read;
    int judged = 0;
    int dug = 0;                 ///< unreadable links that a readable page was found for
    QList<DroppedLink> unjudged; ///< the judge gave no answer, or could not be asked
    QList<DroppedLink> notNewer; ///< releases not newer than the version in use
    QList<FeedTrouble> feeds;
    /// Why the run failed as a whole; a report without it is one of a run that went through, be it
    /// in part. Absent from the reports of earlier versions.
    std::optional<QString> failed;
    std::optional<QList<StepReport>> steps; ///< likewise; a step that made no call is not there
    std::optional<QList<SiteReport>> sites; ///< likewise
    /// Links far past those asked for, which were not even read; absent without any, and from the
    /// reports of earlier versions.
    std::optional<QList<DroppedLink>> surplus;
    /// While a part of the run is still to come. The report is one for all its parts; its date is
    /// the first one's end.
    std::optional<RunWaits> waits;
    QList<QString> warnings; ///< French sentences, to be shown as they are
    QList<QUuid> topicIds;   ///< the topics added, in the order they were judged

    /// False for one that came to nothing before it asked anything: no agent was there, say.
    bool hasBegun() const { return !failed || !scopes.isEmpty() || steps; }

    static constexpr auto jsonFields() {
        return std::tuple_cat(
            LastReport::jsonFields(),
            std::tuple(
                json::field("cancelled", &RunReport::cancelled),
                json::field("saved", &RunReport::saved), json::field("scopes", &RunReport::scopes),
                json::field("read", &RunReport::read), json::field("judged", &RunReport::judged),
                json::field("dug", &RunReport::dug), json::field("unjudged", &RunReport::unjudged),
                json::field("notNewer", &RunReport::notNewer),
                json::field("feeds", &RunReport::feeds), json::field("failed", &RunReport::failed),
                json::field("steps", &RunReport::steps), json::field("sites", &RunReport::sites),
                json::field("surplus", &RunReport::surplus),
                json::field("waits", &RunReport::waits),
                json::field("warnings", &RunReport::warnings),
                json::field("topicIds", &RunReport::topicIds)));
    }
    bool operator==(const RunReport &) const = default;
};

/// Counts again what became of the topics of a report, as `statusOf` gives it; nothing for a topic
/// that is there no more. A yield of which no topic is left stays as it was counted last. Pure.
void countYields(RunReport &report,
                 const std::function<std::optional<TopicStatus>(const QUuid &)> &statusOf);

/// The latest report of that date, one that still waits before any other: two runs may end within
/// one second. The end of the list when there is none.
QList<RunReport>::const_iterator reportOf(const QList<RunReport> &reports, const QDateTime &date);

/// The five keys of a report that are kept as the last one.
inline LastReport lastOf(const RunReport &report) {
    return {report.date, report.added, report.costUSD, report.seconds, report.uncovered};
}

/// A run under way.
struct RunProgress {
    QString status; ///< the status text: the scope started last, then the reading count
    int scopes = 0;
    int scopesDone = 0;
    int candidates = 0;
    int read = 0; ///< candidates whose page was read, or could not be
    int judged = 0;
    int calls = 0;                ///< to the agent, of all parts of the run
    double seconds = 0;           ///< since the run began, its waits apart
    double costUSD = 0;           ///< 0 where the agent does not say
    std::optional<qint64> tokens; ///< likewise
};

} // namespace vorle
