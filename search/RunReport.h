#pragma once

#include "core/Settings.h"
#include "core/Topic.h"

#include <QUuid>

namespace vorle {

/// How one scope of a run went.
struct ScopeReport {
    QString name;
    Origin origin = Origin::Stack;
    int asked = 0;   ///< links asked for
    int found = 0;   ///< links brought back
    int known = 0;   ///< of these, held already
    int merged = 0;  ///< of these, the same link as another of this run
    int refused = 0; ///< of these, no web address
    QString error;   ///< the failure's text when the scope failed, else empty

    static constexpr auto jsonFields() {
        return std::tuple(
            json::field("name", &ScopeReport::name), json::field("origin", &ScopeReport::origin),
            json::field("asked", &ScopeReport::asked), json::field("found", &ScopeReport::found),
            json::field("known", &ScopeReport::known), json::field("merged", &ScopeReport::merged),
            json::field("refused", &ScopeReport::refused),
            json::field("error", &ScopeReport::error));
    }
    bool operator==(const ScopeReport &) const = default;
};

/// How many pages could be read, and how far.
struct ReadCounts {
    int full = 0;
    int seen = 0;
    int meta = 0;
    int none = 0;

    static constexpr auto jsonFields() {
        return std::tuple(
            json::field("full", &ReadCounts::full), json::field("seen", &ReadCounts::seen),
            json::field("meta", &ReadCounts::meta), json::field("none", &ReadCounts::none));
    }
    bool operator==(const ReadCounts &) const = default;
};

/// A link that came back and did not become a topic.
struct DroppedLink {
    QString title;
    QString url;
    QString reason; ///< a French sentence

    static constexpr auto jsonFields() {
        return std::tuple(json::field("title", &DroppedLink::title),
                          json::field("url", &DroppedLink::url),
                          json::field("reason", &DroppedLink::reason));
    }
    bool operator==(const DroppedLink &) const = default;
};

/// A trusted site whose feed gave nothing.
struct FeedTrouble {
    QString site;
    QString problem; ///< a French sentence

    static constexpr auto jsonFields() {
        return std::tuple(json::field("site", &FeedTrouble::site),
                          json::field("problem", &FeedTrouble::problem));
    }
    bool operator==(const FeedTrouble &) const = default;
};

/// How a run went, whole: the five keys kept of the last run, then the rest.
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
    QList<QString> warnings; ///< French sentences, to be shown as they are
    QList<QUuid> topicIds;   ///< the topics added, in the order they were judged

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
                json::field("warnings", &RunReport::warnings),
                json::field("topicIds", &RunReport::topicIds)));
    }
    bool operator==(const RunReport &) const = default;
};

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
};

} // namespace vorle
