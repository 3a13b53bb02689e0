#pragma once

#include "core/RunReport.h"
#include "core/Topic.h"
#include "search/run/Pipeline.h"

#include <QDateTime>
#include <QList>
#include <QString>

#include <optional>

namespace vorle {

/// A search that is left to ask.
struct RemainingScope {
    QString name; ///< as its report has it
    Origin origin = Origin::Stack;
    QList<QString> topics;   ///< of a second search: those that came back empty
    QList<QString> found;    ///< likewise: the links that came back for the others
    json::Rest unknown = {}; ///< keys of a later version

    static constexpr auto jsonFields() {
        return std::tuple(json::field("name", &RemainingScope::name),
                          json::field("origin", &RemainingScope::origin),
                          json::field("topics", &RemainingScope::topics),
                          json::field("found", &RemainingScope::found));
    }
    static constexpr auto jsonRest() { return &RemainingScope::unknown; }
    bool operator==(const RemainingScope &) const = default;
};

/// One scope's word for a link that is left to judge.
struct RemainingProposal {
    Candidate candidate;
    QString scope; ///< whose question brought it, as its report has it
    Origin origin = Origin::Stack;
    std::optional<QString> about; ///< the scope that it is for; nobody's without one
    std::optional<QString> publishedOn;
    std::optional<QString> site; ///< the trusted site whose feed it was kept from
    json::Rest unknown = {};     ///< keys of a later version

    static constexpr auto jsonFields() {
        return std::tuple(json::field("candidate", &RemainingProposal::candidate),
                          json::field("scope", &RemainingProposal::scope),
                          json::field("origin", &RemainingProposal::origin),
                          json::field("about", &RemainingProposal::about),
                          json::field("publishedOn", &RemainingProposal::publishedOn),
                          json::field("site", &RemainingProposal::site));
    }
    static constexpr auto jsonRest() { return &RemainingProposal::unknown; }
    bool operator==(const RemainingProposal &) const = default;
};

/// A link that is left to judge. Its page is read again then: what strangers wrote is not kept.
struct RemainingLink {
    QList<RemainingProposal> proposals; ///< never empty; the first one makes the card
    QList<TopicSource> others;          ///< the same page under other addresses
    /// The card that it has already, whose page could not be read: it is to be dug for.
    std::optional<QUuid> topic;
    json::Rest unknown = {}; ///< keys of a later version

    static constexpr auto jsonFields() {
        return std::tuple(json::field("proposals", &RemainingLink::proposals),
                          json::field("others", &RemainingLink::others),
                          json::field("topic", &RemainingLink::topic));
    }
    static constexpr auto jsonRest() { return &RemainingLink::unknown; }
    bool operator==(const RemainingLink &) const = default;
};

/// What a run has not done yet.
struct RunRest {
    QList<RemainingScope> scopes;
    bool sites = false; ///< the trusted sites' feeds, screening included
    QList<RemainingLink> links;

    bool isEmpty() const { return scopes.isEmpty() && !sites && links.isEmpty(); }
    /// How many are to be asked.
    int searches() const { return static_cast<int>(scopes.size()) + (sites ? 1 : 0); }
    static constexpr auto jsonFields() {
        return std::tuple(json::field("scopes", &RunRest::scopes),
                          json::field("sites", &RunRest::sites),
                          json::field("links", &RunRest::links));
    }
    bool operator==(const RunRest &) const = default;
};

/// What is left of a run that ended where the agent reached its limit: all that the rest of it
/// needs, whenever it comes.
struct RunRemainder : RunRest {
    RunReport report;        ///< of all parts so far; says what it waits for
    int fruitless = 0;       ///< parts in a row that had no answer, see isUnanswered()
    bool asked = false;      ///< goes on when the user says so, and not by itself
    json::Rest unknown = {}; ///< keys of a later version

    static constexpr int maxFruitless = 3;

    const RunWaits &waits() const { return *report.waits; }
    /// So many parts had no answer that it no longer goes on by itself.
    bool isUnanswered() const { return fruitless >= maxFruitless; }

    static constexpr auto jsonFields() {
        return std::tuple_cat(RunRest::jsonFields(),
                              std::tuple(json::field("report", &RunRemainder::report),
                                         json::field("fruitless", &RunRemainder::fruitless),
                                         json::field("asked", &RunRemainder::asked)));
    }
    static constexpr auto jsonRest() { return &RunRemainder::unknown; }
    bool operator==(const RunRemainder &) const = default;
};

/// What is to be done about a remainder.
enum class ResumeAction {
    Wait,
    Go,   ///< on with it
    Offer ///< the user is asked
};

/// A rest whose hour has come goes on by itself, up to twelve hours late; later, without an hour,
/// with one that a clock to believe would not name, or when it came to nothing before, it is
/// offered. While a run is under way it waits. Pure.
ResumeAction resumeAction(const RunRemainder &rest, const QDateTime &now, bool running);

/// The remainder of the last run, in "run-left.json" beside the topics file. Main thread.
class RemainderFile {
public:
    /// The file that lies beside `topicsFile`; a preview (an empty name) keeps nothing.
    explicit RemainderFile(const QString &topicsFile);
    static QString fileName() { return QStringLiteral("run-left.json"); }

    enum class Found {
        Nothing, ///< or what the system does not let be read now, which is logged
        Remainder,
        Unreadable ///< it was read, and is no remainder
    };
    struct Reading {
        Found found = Found::Nothing;
        std::optional<RunRemainder> rest; ///< of a remainder
    };
    Reading read() const;
    /// Puts `rest` in the place of what there is; an unreadable file is kept aside first, under the
    /// date `now`. False where it could not be written: what there was is then still there.
    bool write(const RunRemainder &rest, const QDateTime &now) const;
    /// There is nothing left; an unreadable file is kept aside. False where the file stays.
    bool clear(const QDateTime &now) const;

private:
    Reading examine() const;
    void keepUnreadable(const QDateTime &now) const;

    QString m_file;
};

} // namespace vorle
