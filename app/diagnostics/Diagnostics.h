#pragma once

#include "agents/EngineAgent.h"
#include "base/Clock.h"
#include "base/Json.h"
#include "base/OnDemand.h"
#include "core/Preferences.h"
#include "core/Schedule.h"
#include "core/TopicStore.h"

#include <QList>
#include <QString>

#include <functional>
#include <optional>

namespace vorle {

/// What helps to find out why vorle does not work on a machine, for somebody to send to whoever
/// mends it. It names versions, files, agents and the kinds of the last errors, and nothing of what
/// the person watches: no title, no link, no project, no topic of interest, no prompt, no page, no
/// key. Words that the agent or a page may have written never stand in it: of an error only what it
/// is known to be is told (see ErrorKind.h).
struct Diagnostics {
    struct File {
        QString name;                ///< what it is: "topics", "settings"
        QString path;                ///< "~" for the home
        std::optional<qint64> bytes; ///< nothing when it is not there

        static constexpr auto jsonFields() {
            return std::tuple(json::field("name", &File::name), json::field("path", &File::path),
                              json::field("bytes", &File::bytes));
        }
    };
    struct Count {
        QString status; ///< as the topics file calls it
        qsizetype topics = 0;

        static constexpr auto jsonFields() {
            return std::tuple(json::field("status", &Count::status),
                              json::field("topics", &Count::topics));
        }
    };
    struct Agent {
        QString name;
        AgentReadiness state = AgentReadiness::Missing;
        bool chosen = false;
        std::optional<QString> path;

        static constexpr auto jsonFields() {
            return std::tuple(
                json::field("name", &Agent::name), json::field("state", &Agent::state),
                json::field("chosen", &Agent::chosen), json::field("path", &Agent::path));
        }
    };
    struct Run {
        QDateTime date;
        int added = 0;
        double seconds = 0;
        bool stopped = false;          ///< by the user
        std::optional<QString> failed; ///< what kind of error ended it
        QList<QString> scopes;         ///< the kinds of error of those that failed

        static constexpr auto jsonFields() {
            return std::tuple(
                json::field("date", &Run::date), json::field("added", &Run::added),
                json::field("seconds", &Run::seconds), json::field("stopped", &Run::stopped),
                json::field("failed", &Run::failed), json::field("scopes", &Run::scopes));
        }
    };

    QDateTime date;
    QString version;
    QString qt; ///< at run time, and what it was built with
    QString compiler;
    QString system; ///< name and version
    QString architecture;
    QString surface; ///< where it runs: "xcb", "cocoa"; "terminal" for a command without the app
    QString zone;
    QList<File> files;
    QList<Count> topics;
    bool damaged = false; ///< the topics file is
    QList<Agent> agents;
    std::optional<QString> model; ///< asked of the agent
    QString schedule;             ///< "mon 8:00"; "" without a day
    Schedule runsAt;              ///< the same, for diagnosticText()
    std::optional<QDateTime> nextRun;
    std::optional<QDateTime> lastRun;
    QList<Run> runs;          ///< the last five, newest first
    QList<QString> problems;  ///< what could not be read or saved, as kinds of errors
    QList<QString> log;       ///< the last lines of this process, as kinds of errors
    QList<QString> variables; ///< the names of those of ours that are set

    // What problems begin with.
    static constexpr const char *savingTopics = "saving the topics";
    static constexpr const char *savingSettings = "saving the settings";
    static constexpr const char *noSettings = "the settings file was not read as settings";
    static constexpr const char *theTopics = "the topics";
    static constexpr const char *theSettings = "the settings";
    static constexpr const char *theAgents = "the agents";

    static constexpr auto jsonFields() {
        return std::tuple(
            json::field("date", &Diagnostics::date), json::field("version", &Diagnostics::version),
            json::field("qt", &Diagnostics::qt), json::field("compiler", &Diagnostics::compiler),
            json::field("system", &Diagnostics::system),
            json::field("architecture", &Diagnostics::architecture),
            json::field("surface", &Diagnostics::surface), json::field("zone", &Diagnostics::zone),
            json::field("files", &Diagnostics::files), json::field("topics", &Diagnostics::topics),
            json::field("damaged", &Diagnostics::damaged),
            json::field("agents", &Diagnostics::agents), json::field("model", &Diagnostics::model),
            json::field("schedule", &Diagnostics::schedule),
            json::field("nextRun", &Diagnostics::nextRun),
            json::field("lastRun", &Diagnostics::lastRun), json::field("runs", &Diagnostics::runs),
            json::field("problems", &Diagnostics::problems), json::field("log", &Diagnostics::log),
            json::field("variables", &Diagnostics::variables));
    }
};

struct DiagnosticSources {
    OnDemand<Preferences> preferences;
    OnDemand<TopicStore> topics;
    OnDemand<EngineAgent> agent;
    std::function<QString()> topicsFile; ///< may throw std::system_error
    const Clock &clock;
    QString surface;
};

/// Reads what it needs, starts nothing, changes nothing. What cannot be read is told among the
/// problems. Main thread.
Diagnostics diagnose(const DiagnosticSources &sources);

/// The same for people, in French, a few lines to paste somewhere.
QString diagnosticText(const Diagnostics &diagnostics);

} // namespace vorle
